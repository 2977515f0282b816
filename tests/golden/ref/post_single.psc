%!PS-Adobe-2.0
%%BoundingBox: 28 14 416 562
%%Creator: ZORVEL  10.6 L
%%CreationDate: 14.11.2023 , 22:13:20
%%EndComments
%%Page: 1 1
2 setlinecap 2 setlinejoin
/cm {0.1417322835 mul} def /rgb {255 div} def /lc 1 string def
/u  { /y exch cm def /x exch cm def newpath  x y moveto } def
/d  { /y exch cm def /x exch cm def x y lineto } def
/p  { stroke } def
/e { /b exch rgb def /g exch rgb def
 /r exch rgb def /v exch cm def /w exch cm def /y exch cm def
 /x exch cm def gsave r g b setrgbcolor newpath x y moveto
 w y lineto w v lineto x v lineto closepath fill grestore } def
/f { /b exch rgb def /g exch rgb def
 /r exch rgb def r g b setrgbcolor } def
/clp {/v exch cm def /w exch cm def /y exch cm def
 /x exch cm def newpath x y moveto
 w y lineto w v lineto x v lineto closepath clip } def
/text { /c1 exch def /a exch def /y exch cm def /x exch cm def
 /Name exch def gsave x y moveto x y translate a rotate c1 0 gt
 { Name stringwidth 2 div neg exch 2 div neg exch rmoveto }
 {} ifelse Name show grestore } def /font { /h exch def
 /s exch def s findfont h scalefont setfont } def
/font2 { /h2 exch def /h1 exch def /s exch def s findfont
 [h2 0 0 h1 0 0] makefont setfont } def
/c { /a exch def /y exch cm def /x exch cm def /i exch def
 gsave x y moveto x y translate a rotate lc 0 i put lc
 stringwidth 2 div neg exch 2 div neg exch rmoveto lc show
 grestore } def
/sec { /b exch rgb def /g exch rgb def /r exch rgb def
 /a2 exch def /a exch def /r2 exch cm def /r1 exch cm def
 /y exch cm def /x exch cm def gsave r g b setrgbcolor newpath
 x y r1 a a2 arc x y r2 a2 a arcn closepath fill grestore } def
/tri { /y3 exch cm def /x3 exch cm def /y2 exch cm def
 /x2 exch cm def /y1 exch cm def /x1 exch cm def
 gsave newpath x1 y1 moveto
 x2 y2 lineto x3 y3 lineto closepath fill grestore } def
/Reencsmalldict 12 dict def
/ReEncodeSmall
{ Reencsmalldict begin
  /NewCodesAndNames exch def
  /NewFontName exch def
  /BaseFontName exch def
  /BaseFontDict
  BaseFontName findfont def
  /NewFont BaseFontDict
  maxlength dict def
  BaseFontDict
  { exch dup /FID ne
    { dup /Encoding eq
      { exch dup length array copy
        NewFont 3 1 roll put
      }
      { exch NewFont 3 1 roll put
      } ifelse
      }
      {pop pop} ifelse
    } forall
    NewFont
    /FontName NewFontName put
    NewCodesAndNames aload pop
    NewCodesAndNames
    length 2 idiv
    { NewFont /Encoding get
    3 1 roll put  } repeat
    NewFontName NewFont
    definefont pop end } def
 /GermanVec [ 8#177 /Adieresis
 8#200 /Odieresis 8#201 /Udieresis 8#202 /adieresis
 8#203 /odieresis 8#204 /udieresis 8#205 /germandbls
 8#206 /Aring     8#207 /Oslash    8#210 /AE
 8#211 /aring     8#212 /oslash    8#213 /ae
 8#214 /Ntilde    8#215 /ntilde    8#216 /Ccedilla
 8#217 /ccedilla  8#220 /Edieresis 8#221 /Idieresis
 8#222 /edieresis 8#223 /idieresis 8#224 /Aacute
 8#225 /Eacute    8#226 /Iacute    8#227 /Oacute
 8#230 /Uacute    8#231 /aacute    8#232 /eacute
 8#233 /iacute    8#234 /oacute    8#235 /uacute
 8#236 /Agrave    8#237 /Egrave    8#240 /Igrave
 8#241 /Ograve    8#242 /Ugrave    8#243 /agrave
 8#244 /egrave    8#245 /igrave    8#246 /ograve
 8#247 /ugrave      8#250 /Acircumflex 8#251 /Ecircumflex
 8#252 /Icircumflex 8#253 /Ocircumflex 8#254 /Ucircumflex
 8#255 /acircumflex 8#256 /ecircumflex 8#257 /icircumflex
 8#260 /ocircumflex 8#261 /ucircumflex 8#262 /Atilde
 8#263 /atilde 8#264 /Otilde 8#265 /otilde 8#266 /Yacute
 8#267 /yacute 8#270 /ydieresis
 8#271 /exclamdown 8#272 /questiondown ] def
  100 cm    50 cm translate   0.700000  0.700000 scale
erasepage
5.00 cm setlinewidth 0 0 0 f 186 186 u 3712 5328 d p 3712 186 u 3711 187 d p 
3701 203 u 3700 204 d p 3689 219 u 3688 221 d p 3678 236 u 3677 238 d p 3666 
253 u 3665 255 d p 3655 270 u 3654 271 d p 3643 287 u 3642 288 d p 3632 304 u 
3631 305 d p 3620 320 u 3619 322 d p 3608 337 u 3607 339 d p 3597 354 u 3596 
356 d p 3585 371 u 3584 373 d p 3574 388 u 3573 389 d p 3562 405 u 3561 406 d p 
3551 422 u 3550 423 d p 3539 438 u 3538 440 d p 3528 455 u 3527 457 d p 3516 
472 u 3515 474 d p 3504 489 u 3503 490 d p 3493 506 u 3492 507 d p 3481 523 u 
3480 524 d p 3470 540 u 3469 541 d p 3458 556 u 3457 558 d p 3447 573 u 3446 
575 d p 3435 590 u 3434 592 d p 3424 607 u 3423 608 d p 3412 624 u 3411 625 d p 
3400 641 u 3399 642 d p 3389 657 u 3388 659 d p 3377 674 u 3376 676 d p 3366 
691 u 3365 693 d p 3354 708 u 3353 710 d p 3343 725 u 3342 726 d p 3331 742 u 
3330 743 d p 3320 759 u 3319 760 d p 3308 775 u 3307 777 d p 3296 792 u 3295 
794 d p 3285 809 u 3284 811 d p 3273 826 u 3272 827 d p 3262 843 u 3261 844 d p 
3250 860 u 3249 861 d p 3239 876 u 3238 878 d p 3227 893 u 3226 895 d p 3216 
910 u 3215 912 d p 3204 927 u 3203 929 d p 3192 944 u 3191 945 d p 3181 961 u 
3180 962 d p 3169 978 u 3168 979 d p 3158 994 u 3157 996 d p 3146 1011 u 3145 
1013 d p 3135 1028 u 3134 1030 d p 3123 1045 u 3122 1046 d p 3112 1062 u 3111 
1063 d p 3100 1079 u 3099 1080 d p 3089 1095 u 3087 1097 d p 3077 1112 u 3076 
1114 d p 3065 1129 u 3064 1131 d p 3054 1146 u 3053 1148 d p 3042 1163 u 3041 
1164 d p 3031 1180 u 3030 1181 d p 3019 1197 u 3018 1198 d p 3008 1213 u 3007 
1215 d p 2996 1230 u 2995 1232 d p 2985 1247 u 2983 1249 d p 2973 1264 u 2972 
1265 d p 2961 1281 u 2960 1282 d p 2950 1298 u 2949 1299 d p 2938 1314 u 2937 
1316 d p 2927 1331 u 2926 1333 d p 2915 1348 u 2914 1350 d p 2904 1365 u 2903 
1367 d p 2892 1382 u 2891 1383 d p 2881 1399 u 2879 1400 d p 2869 1416 u 2868 
1417 d p 2857 1432 u 2856 1434 d p 2846 1449 u 2845 1451 d p 2834 1466 u 2833 
1468 d p 2823 1483 u 2822 1484 d p 2811 1500 u 2810 1501 d p 2800 1517 u 2799 
1518 d p 2788 1533 u 2787 1535 d p 2777 1550 u 2776 1552 d p 2765 1567 u 2764 
1569 d p 2753 1584 u 2752 1586 d p 2742 1601 u 2741 1602 d p 2730 1618 u 2729 
1619 d p 2719 1635 u 2718 1636 d p 2707 1651 u 2706 1653 d p 2696 1668 u 2695 
1670 d p 2684 1685 u 2683 1687 d p 2673 1702 u 2672 1704 d p 2661 1719 u 2660 
1720 d p 2649 1736 u 2648 1737 d p 2638 1753 u 2637 1754 d p 2626 1769 u 2625 
1771 d p 2615 1786 u 2614 1788 d p 2603 1803 u 2602 1805 d p 2592 1820 u 2591 
1821 d p 2580 1837 u 2579 1838 d p 2569 1854 u 2568 1855 d p 2557 1870 u 2556 
1872 d p 2545 1887 u 2544 1889 d p 2534 1904 u 2533 1906 d p 2522 1921 u 2521 
1923 d p 2511 1938 u 2510 1939 d p 2499 1955 u 2498 1956 d p 2488 1972 u 2487 
1973 d p 2476 1988 u 2475 1990 d p 2465 2005 u 2464 2007 d p 2453 2022 u 2452 
2024 d p 2441 2039 u 2440 2040 d p 2430 2056 u 2429 2057 d p 2418 2073 u 2417 
2074 d p 2407 2089 u 2406 2091 d p 2395 2106 u 2394 2108 d p 2384 2123 u 2383 
2125 d p 2372 2140 u 2371 2142 d p 2361 2157 u 2360 2158 d p 2349 2174 u 2348 
2175 d p 2338 2191 u 2336 2192 d p 2326 2207 u 2325 2209 d p 2314 2224 u 2313 
2226 d p 2303 2241 u 2302 2243 d p 2291 2258 u 2290 2259 d p 2280 2275 u 2279 
2276 d p 2268 2292 u 2267 2293 d p 2257 2308 u 2256 2310 d p 2245 2325 u 2244 
2327 d p 2234 2342 u 2232 2344 d p 2222 2359 u 2221 2361 d p 2210 2376 u 2209 
2377 d p 2199 2393 u 2198 2394 d p 2187 2410 u 2186 2411 d p 2176 2426 u 2175 
2428 d p 2164 2443 u 2163 2445 d p 2153 2460 u 2152 2462 d p 2141 2477 u 2140 
2478 d p 2130 2494 u 2128 2495 d p 2118 2511 u 2117 2512 d p 2106 2527 u 2105 
2529 d p 2095 2544 u 2094 2546 d p 2083 2561 u 2082 2563 d p 2072 2578 u 2071 
2580 d p 2060 2595 u 2059 2596 d p 2049 2612 u 2048 2613 d p 2037 2629 u 2036 
2630 d p 2026 2645 u 2024 2647 d p 2014 2662 u 2013 2664 d p 2002 2679 u 2001 
2681 d p 1991 2696 u 1990 2697 d p 1979 2713 u 1978 2714 d p 1968 2730 u 1967 
2731 d p 1956 2747 u 1955 2748 d p 1945 2763 u 1944 2765 d p 1933 2780 u 1932 
2782 d p 1922 2797 u 1921 2799 d p 1910 2814 u 1909 2815 d p 1898 2831 u 1897 
2832 d p 1887 2848 u 1886 2849 d p 1875 2864 u 1874 2866 d p 1864 2881 u 1863 
2883 d p 1852 2898 u 1851 2900 d p 1841 2915 u 1840 2917 d p 1829 2932 u 1828 
2933 d p 1818 2949 u 1817 2950 d p 1806 2966 u 1805 2967 d p 1794 2982 u 1793 
2984 d p 1783 2999 u 1782 3001 d p 1771 3016 u 1770 3018 d p 1760 3033 u 1759 
3034 d p 1748 3050 u 1747 3051 d p 1737 3067 u 1736 3068 d p 1725 3083 u 1724 
3085 d p 1714 3100 u 1713 3102 d p 1702 3117 u 1701 3119 d p 1690 3134 u 1689 
3136 d p 1679 3151 u 1678 3152 d p 1667 3168 u 1666 3169 d p 1656 3185 u 1655 
3186 d p 1644 3201 u 1643 3203 d p 1633 3218 u 1632 3220 d p 1621 3235 u 1620 
3237 d p 1610 3252 u 1609 3253 d p 1598 3269 u 1597 3270 d p 1586 3286 u 1585 
3287 d p 1575 3302 u 1574 3304 d p 1563 3319 u 1562 3321 d p 1552 3336 u 1551 
3338 d p 1540 3353 u 1539 3355 d p 1529 3370 u 1528 3371 d p 1517 3387 u 1516 
3388 d p 1506 3404 u 1505 3405 d p 1494 3420 u 1493 3422 d p 1483 3437 u 1481 
3439 d p 1471 3454 u 1470 3456 d p 1459 3471 u 1458 3472 d p 1448 3488 u 1447 
3489 d p 1436 3505 u 1435 3506 d p 1425 3521 u 1424 3523 d p 1413 3538 u 1412 
3540 d p 1402 3555 u 1401 3557 d p 1390 3572 u 1389 3574 d p 1379 3589 u 1377 
3590 d p 1367 3606 u 1366 3607 d p 1355 3623 u 1354 3624 d p 1344 3639 u 1343 
3641 d p 1332 3656 u 1331 3658 d p 1321 3673 u 1320 3675 d p 1309 3690 u 1308 
3691 d p 1298 3707 u 1297 3708 d p 1286 3724 u 1285 3725 d p 1275 3740 u 1273 
3742 d p 1263 3757 u 1262 3759 d p 1251 3774 u 1250 3776 d p 1240 3791 u 1239 
3793 d p 1228 3808 u 1227 3809 d p 1217 3825 u 1216 3826 d p 1205 3842 u 1204 
3843 d p 1194 3858 u 1193 3860 d p 1182 3875 u 1181 3877 d p 1171 3892 u 1169 
3894 d p 1159 3909 u 1158 3910 d p 1147 3926 u 1146 3927 d p 1136 3943 u 1135 
3944 d p 1124 3960 u 1123 3961 d p 1113 3976 u 1112 3978 d p 1101 3993 u 1100 
3995 d p 1090 4010 u 1089 4012 d p 1078 4027 u 1077 4028 d p 1067 4044 u 1066 
4045 d p 1055 4061 u 1054 4062 d p 1043 4077 u 1042 4079 d p 1032 4094 u 1031 
4096 d p 1020 4111 u 1019 4113 d p 1009 4128 u 1008 4130 d p 997 4145 u 996 
4146 d p 986 4162 u 985 4163 d p 974 4179 u 973 4180 d p 963 4195 u 962 4197 d 
p 951 4212 u 950 4214 d p 939 4229 u 938 4231 d p 928 4246 u 927 4247 d p 916 
4263 u 915 4264 d p 905 4280 u 904 4281 d p 893 4296 u 892 4298 d p 882 4313 u 
881 4315 d p 870 4330 u 869 4332 d p 859 4347 u 858 4349 d p 847 4364 u 846 
4365 d p 835 4381 u 834 4382 d p 824 4398 u 823 4399 d p 812 4414 u 811 4416 d 
p 801 4431 u 800 4433 d p 789 4448 u 788 4450 d p 778 4465 u 777 4466 d p 766 
4482 u 765 4483 d p 755 4499 u 754 4500 d p 743 4515 u 742 4517 d p 731 4532 u 
730 4534 d p 720 4549 u 719 4551 d p 708 4566 u 707 4568 d p 697 4583 u 696 
4584 d p 685 4600 u 684 4601 d p 674 4617 u 673 4618 d p 662 4633 u 661 4635 d 
p 651 4650 u 650 4652 d p 639 4667 u 638 4669 d p 628 4684 u 626 4685 d p 616 
4701 u 615 4702 d p 604 4718 u 603 4719 d p 593 4734 u 592 4736 d p 581 4751 u 
580 4753 d p 570 4768 u 569 4770 d p 558 4785 u 557 4787 d p 547 4802 u 546 
4803 d p 535 4819 u 534 4820 d p 524 4836 u 522 4837 d p 512 4852 u 511 4854 d 
p 500 4869 u 499 4871 d p 489 4886 u 488 4888 d p 477 4903 u 476 4904 d p 466 
4920 u 465 4921 d p 454 4937 u 453 4938 d p 443 4954 u 442 4955 d p 431 4970 u 
430 4972 d p 420 4987 u 418 4989 d p 408 5004 u 407 5006 d p 396 5021 u 395 
5022 d p 385 5038 u 384 5039 d p 373 5055 u 372 5056 d p 362 5071 u 361 5073 d 
p 350 5088 u 349 5090 d p 339 5105 u 338 5107 d p 327 5122 u 326 5124 d p 316 
5139 u 315 5140 d p 304 5156 u 303 5157 d p 292 5173 u 291 5174 d p 281 5189 u 
280 5191 d p 269 5206 u 268 5208 d p 258 5223 u 257 5225 d p 246 5240 u 245 
5241 d p 235 5257 u 234 5258 d p 223 5274 u 222 5275 d p 212 5290 u 211 5292 d 
p 200 5307 u 199 5309 d p 188 5324 u 187 5326 d p showpage 
