%!PS-Adobe-2.0
%%BoundingBox: 28 14 445 604
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
0 0 0 f 200 200 u 3998 5738 d p 3998 200 u 3997 202 d p 3986 218 u 3984 220 d p 
3973 236 u 3972 238 d p 3961 254 u 3960 256 d p 3948 273 u 3947 274 d p 3936 
291 u 3935 292 d p 3923 309 u 3922 311 d p 3911 327 u 3910 329 d p 3898 345 u 
3897 347 d p 3886 363 u 3885 365 d p 3874 381 u 3872 383 d p 3861 400 u 3860 
401 d p 3849 418 u 3848 419 d p 3836 436 u 3835 438 d p 3824 454 u 3823 456 d p 
3811 472 u 3810 474 d p 3799 490 u 3798 492 d p 3786 508 u 3785 510 d p 3774 
527 u 3773 528 d p 3762 545 u 3760 546 d p 3749 563 u 3748 565 d p 3737 581 u 
3736 583 d p 3724 599 u 3723 601 d p 3712 617 u 3711 619 d p 3699 635 u 3698 
637 d p 3687 654 u 3686 655 d p 3674 672 u 3673 673 d p 3662 690 u 3661 692 d p 
3650 708 u 3648 710 d p 3637 726 u 3636 728 d p 3625 744 u 3624 746 d p 3612 
762 u 3611 764 d p 3600 781 u 3599 782 d p 3587 799 u 3586 800 d p 3575 817 u 
3574 819 d p 3563 835 u 3561 837 d p 3550 853 u 3549 855 d p 3538 871 u 3536 
873 d p 3525 889 u 3524 891 d p 3513 908 u 3512 909 d p 3500 926 u 3499 927 d p 
3488 944 u 3487 946 d p 3475 962 u 3474 964 d p 3463 980 u 3462 982 d p 3451 
998 u 3449 1000 d p 3438 1016 u 3437 1018 d p 3426 1035 u 3425 1036 d p 3413 
1053 u 3412 1054 d p 3401 1071 u 3400 1073 d p 3388 1089 u 3387 1091 d p 3376 
1107 u 3375 1109 d p 3363 1125 u 3362 1127 d p 3351 1143 u 3350 1145 d p 3339 
1162 u 3337 1163 d p 3326 1180 u 3325 1181 d p 3314 1198 u 3313 1200 d p 3301 
1216 u 3300 1218 d p 3289 1234 u 3288 1236 d p 3276 1252 u 3275 1254 d p 3264 
1270 u 3263 1272 d p 3251 1289 u 3250 1290 d p 3239 1307 u 3238 1308 d p 3227 
1325 u 3225 1327 d p 3214 1343 u 3213 1345 d p 3202 1361 u 3201 1363 d p 3189 
1379 u 3188 1381 d p 3177 1397 u 3176 1399 d p 3164 1416 u 3163 1417 d p 3152 
1434 u 3151 1435 d p 3139 1452 u 3138 1454 d p 3127 1470 u 3126 1472 d p 3115 
1488 u 3113 1490 d p 3102 1506 u 3101 1508 d p 3090 1524 u 3089 1526 d p 3077 
1543 u 3076 1544 d p 3065 1561 u 3064 1562 d p 3052 1579 u 3051 1581 d p 3040 
1597 u 3039 1599 d p 3027 1615 u 3026 1617 d p 3015 1633 u 3014 1635 d p 3003 
1651 u 3001 1653 d p 2990 1670 u 2989 1671 d p 2978 1688 u 2977 1689 d p 2965 
1706 u 2964 1708 d p 2953 1724 u 2952 1726 d p 2940 1742 u 2939 1744 d p 2928 
1760 u 2927 1762 d p 2915 1778 u 2914 1780 d p 2903 1797 u 2902 1798 d p 2891 
1815 u 2889 1816 d p 2878 1833 u 2877 1835 d p 2866 1851 u 2865 1853 d p 2853 
1869 u 2852 1871 d p 2841 1887 u 2840 1889 d p 2828 1905 u 2827 1907 d p 2816 
1924 u 2815 1925 d p 2803 1942 u 2802 1943 d p 2791 1960 u 2790 1962 d p 2779 
1978 u 2777 1980 d p 2766 1996 u 2765 1998 d p 2754 2014 u 2753 2016 d p 2741 
2032 u 2740 2034 d p 2729 2051 u 2728 2052 d p 2716 2069 u 2715 2070 d p 2704 
2087 u 2703 2089 d p 2692 2105 u 2690 2107 d p 2679 2123 u 2678 2125 d p 2667 
2141 u 2665 2143 d p 2654 2159 u 2653 2161 d p 2642 2178 u 2641 2179 d p 2629 
2196 u 2628 2197 d p 2617 2214 u 2616 2216 d p 2604 2232 u 2603 2234 d p 2592 
2250 u 2591 2252 d p 2580 2268 u 2578 2270 d p 2567 2286 u 2566 2288 d p 2555 
2305 u 2554 2306 d p 2542 2323 u 2541 2324 d p 2530 2341 u 2529 2343 d p 2517 
2359 u 2516 2361 d p 2505 2377 u 2504 2379 d p 2492 2395 u 2491 2397 d p 2480 
2413 u 2479 2415 d p 2468 2432 u 2466 2433 d p 2455 2450 u 2454 2451 d p 2443 
2468 u 2442 2470 d p 2430 2486 u 2429 2488 d p 2418 2504 u 2417 2506 d p 2405 
2522 u 2404 2524 d p 2393 2540 u 2392 2542 d p 2380 2559 u 2379 2560 d p 2368 
2577 u 2367 2578 d p 2356 2595 u 2354 2597 d p 2343 2613 u 2342 2615 d p 2331 
2631 u 2330 2633 d p 2318 2649 u 2317 2651 d p 2306 2667 u 2305 2669 d p 2293 
2686 u 2292 2687 d p 2281 2704 u 2280 2705 d p 2268 2722 u 2267 2724 d p 2256 
2740 u 2255 2742 d p 2244 2758 u 2242 2760 d p 2231 2776 u 2230 2778 d p 2219 
2794 u 2218 2796 d p 2206 2813 u 2205 2814 d p 2194 2831 u 2193 2832 d p 2181 
2849 u 2180 2851 d p 2169 2867 u 2168 2869 d p 2156 2885 u 2155 2887 d p 2144 
2903 u 2143 2905 d p 2132 2921 u 2130 2923 d p 2119 2940 u 2118 2941 d p 2107 
2958 u 2106 2959 d p 2094 2976 u 2093 2978 d p 2082 2994 u 2081 2996 d p 2069 
3012 u 2068 3014 d p 2057 3030 u 2056 3032 d p 2044 3048 u 2043 3050 d p 2032 
3067 u 2031 3068 d p 2020 3085 u 2018 3086 d p 2007 3103 u 2006 3105 d p 1995 
3121 u 1994 3123 d p 1982 3139 u 1981 3141 d p 1970 3157 u 1969 3159 d p 1957 
3175 u 1956 3177 d p 1945 3194 u 1944 3195 d p 1933 3212 u 1931 3213 d p 1920 
3230 u 1919 3232 d p 1908 3248 u 1906 3250 d p 1895 3266 u 1894 3268 d p 1883 
3284 u 1882 3286 d p 1870 3302 u 1869 3304 d p 1858 3321 u 1857 3322 d p 1845 
3339 u 1844 3340 d p 1833 3357 u 1832 3359 d p 1821 3375 u 1819 3377 d p 1808 
3393 u 1807 3395 d p 1796 3411 u 1794 3413 d p 1783 3429 u 1782 3431 d p 1771 
3448 u 1770 3449 d p 1758 3466 u 1757 3467 d p 1746 3484 u 1745 3486 d p 1733 
3502 u 1732 3504 d p 1721 3520 u 1720 3522 d p 1709 3538 u 1707 3540 d p 1696 
3557 u 1695 3558 d p 1684 3575 u 1683 3576 d p 1671 3593 u 1670 3594 d p 1659 
3611 u 1658 3613 d p 1646 3629 u 1645 3631 d p 1634 3647 u 1633 3649 d p 1621 
3665 u 1620 3667 d p 1609 3684 u 1608 3685 d p 1597 3702 u 1595 3703 d p 1584 
3720 u 1583 3721 d p 1572 3738 u 1571 3740 d p 1559 3756 u 1558 3758 d p 1547 
3774 u 1546 3776 d p 1534 3792 u 1533 3794 d p 1522 3811 u 1521 3812 d p 1509 
3829 u 1508 3830 d p 1497 3847 u 1496 3848 d p 1485 3865 u 1483 3867 d p 1472 
3883 u 1471 3885 d p 1460 3901 u 1459 3903 d p 1447 3919 u 1446 3921 d p 1435 
3938 u 1434 3939 d p 1422 3956 u 1421 3957 d p 1410 3974 u 1409 3975 d p 1397 
3992 u 1396 3994 d p 1385 4010 u 1384 4012 d p 1373 4028 u 1371 4030 d p 1360 
4046 u 1359 4048 d p 1348 4065 u 1347 4066 d p 1335 4083 u 1334 4084 d p 1323 
4101 u 1322 4102 d p 1310 4119 u 1309 4121 d p 1298 4137 u 1297 4139 d p 1285 
4155 u 1284 4157 d p 1273 4173 u 1272 4175 d p 1261 4192 u 1259 4193 d p 1248 
4210 u 1247 4211 d p 1236 4228 u 1235 4229 d p 1223 4246 u 1222 4248 d p 1211 
4264 u 1210 4266 d p 1198 4282 u 1197 4284 d p 1186 4300 u 1185 4302 d p 1173 
4319 u 1172 4320 d p 1161 4337 u 1160 4338 d p 1149 4355 u 1147 4356 d p 1136 
4373 u 1135 4375 d p 1124 4391 u 1123 4393 d p 1111 4409 u 1110 4411 d p 1099 
4427 u 1098 4429 d p 1086 4446 u 1085 4447 d p 1074 4464 u 1073 4465 d p 1062 
4482 u 1060 4483 d p 1049 4500 u 1048 4502 d p 1037 4518 u 1035 4520 d p 1024 
4536 u 1023 4538 d p 1012 4554 u 1011 4556 d p 999 4573 u 998 4574 d p 987 4591 
u 986 4592 d p 974 4609 u 973 4610 d p 962 4627 u 961 4629 d p 950 4645 u 948 
4647 d p 937 4663 u 936 4665 d p 925 4681 u 924 4683 d p 912 4700 u 911 4701 d 
p 900 4718 u 899 4719 d p 887 4736 u 886 4737 d p 875 4754 u 874 4756 d p 862 
4772 u 861 4774 d p 850 4790 u 849 4792 d p 838 4808 u 836 4810 d p 825 4827 u 
824 4828 d p 813 4845 u 812 4846 d p 800 4863 u 799 4864 d p 788 4881 u 787 
4883 d p 775 4899 u 774 4901 d p 763 4917 u 762 4919 d p 750 4935 u 749 4937 d 
p 738 4954 u 737 4955 d p 726 4972 u 724 4973 d p 713 4990 u 712 4991 d p 701 
5008 u 700 5010 d p 688 5026 u 687 5028 d p 676 5044 u 675 5046 d p 663 5062 u 
662 5064 d p 651 5081 u 650 5082 d p 638 5099 u 637 5100 d p 626 5117 u 625 
5118 d p 614 5135 u 612 5137 d p 601 5153 u 600 5155 d p 589 5171 u 588 5173 d 
p 576 5189 u 575 5191 d p 564 5208 u 563 5209 d p 551 5226 u 550 5227 d p 539 
5244 u 538 5245 d p 526 5262 u 525 5264 d p 514 5280 u 513 5282 d p 502 5298 u 
500 5300 d p 489 5316 u 488 5318 d p 477 5335 u 476 5336 d p 464 5353 u 463 
5354 d p 452 5371 u 451 5372 d p 439 5389 u 438 5391 d p 427 5407 u 426 5409 d 
p 414 5425 u 413 5427 d p 402 5443 u 401 5445 d p 390 5462 u 388 5463 d p 377 
5480 u 376 5481 d p 365 5498 u 364 5499 d p 352 5516 u 351 5518 d p 340 5534 u 
339 5536 d p 327 5552 u 326 5554 d p 315 5570 u 314 5572 d p 302 5589 u 301 
5590 d p 290 5607 u 289 5608 d p 278 5625 u 276 5626 d p 265 5643 u 264 5645 d 
p 253 5661 u 252 5663 d p 240 5679 u 239 5681 d p 228 5697 u 227 5699 d p 215 
5716 u 214 5717 d p 203 5734 u 202 5735 d p showpage 
