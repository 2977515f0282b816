#!/usr/bin/env python3
"""Generates text/ps_font_metrics.cpp: metrics of the 35 standard PostScript fonts.

Usage: gen_ps_fonts.py [FONT_DIR] [OUT]
  FONT_DIR  folder of the URW base35 fonts, AFM and .t1 files (default: Debian's
            fonts-urw-base35, /usr/share/fonts/type1/urw-base35)
  OUT       output file (default: text/ps_font_metrics.cpp beside this script's repository)

For every font: its glyphs as (Unicode, advance width, glyph name) sorted by Unicode, its
kerning pairs (AFM KPX) sorted by the glyph names' places in one shared pool of names,
the numbers of a PDF font descriptor, and for Symbol and ZapfDingbats the characters of
their built-in encoding at codes 32..126. Glyph names become Unicode by the Adobe Glyph
List rules: "uniXXXX", "uXXXX[XX]", else the names of GLYPH_LIST below (ZapfDingbats: its
own "a1".."a191" names). Alternates with a suffix ("a.sc") and ligatures ("f_f") have no
character of their own and are left out. See SOURCES_PS_FONTS.md.
"""

import os
import re
import sys

# (PostScript name, URW file stem, family key, CSS weight, italic, standard 14)
FONTS = [
    ("Times-Roman", "NimbusRoman-Regular", "times", 400, False, True),
    ("Times-Italic", "NimbusRoman-Italic", "times", 400, True, True),
    ("Times-Bold", "NimbusRoman-Bold", "times", 700, False, True),
    ("Times-BoldItalic", "NimbusRoman-BoldItalic", "times", 700, True, True),
    ("Helvetica", "NimbusSans-Regular", "helvetica", 400, False, True),
    ("Helvetica-Oblique", "NimbusSans-Italic", "helvetica", 400, True, True),
    ("Helvetica-Bold", "NimbusSans-Bold", "helvetica", 700, False, True),
    ("Helvetica-BoldOblique", "NimbusSans-BoldItalic", "helvetica", 700, True, True),
    ("Courier", "NimbusMonoPS-Regular", "courier", 400, False, True),
    ("Courier-Oblique", "NimbusMonoPS-Italic", "courier", 400, True, True),
    ("Courier-Bold", "NimbusMonoPS-Bold", "courier", 700, False, True),
    ("Courier-BoldOblique", "NimbusMonoPS-BoldItalic", "courier", 700, True, True),
    ("Helvetica-Narrow", "NimbusSansNarrow-Regular", "narrow", 400, False, False),
    ("Helvetica-Narrow-Oblique", "NimbusSansNarrow-Oblique", "narrow", 400, True, False),
    ("Helvetica-Narrow-Bold", "NimbusSansNarrow-Bold", "narrow", 700, False, False),
    ("Helvetica-Narrow-BoldOblique", "NimbusSansNarrow-BoldOblique", "narrow", 700, True,
     False),
    ("AvantGarde-Book", "URWGothic-Book", "avantgarde", 400, False, False),
    ("AvantGarde-BookOblique", "URWGothic-BookOblique", "avantgarde", 400, True, False),
    ("AvantGarde-Demi", "URWGothic-Demi", "avantgarde", 600, False, False),
    ("AvantGarde-DemiOblique", "URWGothic-DemiOblique", "avantgarde", 600, True, False),
    ("Bookman-Light", "URWBookman-Light", "bookman", 300, False, False),
    ("Bookman-LightItalic", "URWBookman-LightItalic", "bookman", 300, True, False),
    ("Bookman-Demi", "URWBookman-Demi", "bookman", 600, False, False),
    ("Bookman-DemiItalic", "URWBookman-DemiItalic", "bookman", 600, True, False),
    ("NewCenturySchlbk-Roman", "C059-Roman", "century", 400, False, False),
    ("NewCenturySchlbk-Italic", "C059-Italic", "century", 400, True, False),
    ("NewCenturySchlbk-Bold", "C059-Bold", "century", 700, False, False),
    ("NewCenturySchlbk-BoldItalic", "C059-BdIta", "century", 700, True, False),
    ("Palatino-Roman", "P052-Roman", "palatino", 400, False, False),
    ("Palatino-Italic", "P052-Italic", "palatino", 400, True, False),
    ("Palatino-Bold", "P052-Bold", "palatino", 700, False, False),
    ("Palatino-BoldItalic", "P052-BoldItalic", "palatino", 700, True, False),
    ("ZapfChancery-MediumItalic", "Z003-MediumItalic", "chancery", 500, True, False),
    ("Symbol", "StandardSymbolsPS", "symbol", 400, False, True),
    ("ZapfDingbats", "D050000L", "dingbats", 400, False, True),
]
assert len(FONTS) == 35

# CSS font-family lists: the PostScript family, the names systems give the same design,
# the URW twin, the generic family last. (family key -> list, PDF flags Serif/Script)
FAMILIES = {
    "times": ("'Times New Roman', Times, 'Nimbus Roman', serif", "serif"),
    "helvetica": ("Helvetica, Arial, 'Nimbus Sans', sans-serif", ""),
    "courier": ("'Courier New', Courier, 'Nimbus Mono PS', monospace", "serif"),
    "narrow": ("'Helvetica Narrow', 'Arial Narrow', 'Nimbus Sans Narrow', sans-serif", ""),
    "avantgarde": ("'ITC Avant Garde Gothic', 'Avant Garde', 'URW Gothic', "
                   "'Century Gothic', sans-serif", ""),
    "bookman": ("'ITC Bookman', 'Bookman Old Style', 'URW Bookman', serif", "serif"),
    "century": ("'New Century Schoolbook', 'Century Schoolbook', C059, serif", "serif"),
    "palatino": ("Palatino, 'Palatino Linotype', 'Book Antiqua', P052, serif", "serif"),
    "chancery": ("'ITC Zapf Chancery', 'Zapf Chancery', Z003, cursive", "script"),
    # Symbol text is written as Unicode: Greek falls back to a Times with Greek where a
    # viewer's "Symbol" has none.
    "symbol": ("Symbol, 'Standard Symbols PS', 'Times New Roman', Times, serif", "serif"),
    "dingbats": ("'ITC Zapf Dingbats', 'Zapf Dingbats', D050000L, Dingbats, sans-serif",
                 ""),
}

# Adobe Glyph List: the names the 35 fonts use, with their characters (hexadecimal).
# Taken from the Adobe Glyph List and the Adobe Glyph List for ITC Zapf Dingbats,
# Copyright 2002-2019 Adobe (http://www.adobe.com/), under the BSD 3-clause licence in
# licences/Adobe-Glyph-List.txt (source: SOURCES_PS_FONTS.md).
GLYPH_LIST = """
A 0041 AE 00C6 AEacute 01FC Aacute 00C1 Abreve 0102 Acircumflex 00C2 Adieresis 00C4
Agrave 00C0 Alpha 0391 Alphatonos 0386 Amacron 0100 Aogonek 0104 Aring 00C5
Aringacute 01FA Atilde 00C3 B 0042 Beta 0392 C 0043 Cacute 0106 Ccaron 010C
Ccedilla 00C7 Ccircumflex 0108 Cdotaccent 010A Chi 03A7 D 0044 Dcaron 010E Dcroat 0110
Delta 2206 E 0045 Eacute 00C9 Ebreve 0114 Ecaron 011A Ecircumflex 00CA Edieresis 00CB
Edotaccent 0116 Egrave 00C8 Emacron 0112 Eng 014A Eogonek 0118 Epsilon 0395
Epsilontonos 0388 Eta 0397 Etatonos 0389 Eth 00D0 Euro 20AC F 0046 G 0047 Gamma 0393
Gbreve 011E Gcircumflex 011C Gcommaaccent 0122 Gdotaccent 0120 H 0048 H18533 25CF
H18543 25AA H18551 25AB Hbar 0126 Hcircumflex 0124 I 0049 IJ 0132 Iacute 00CD
Ibreve 012C Icircumflex 00CE Idieresis 00CF Idotaccent 0130 Ifraktur 2111 Igrave 00CC
Imacron 012A Iogonek 012E Iota 0399 Iotadieresis 03AA Iotatonos 038A Itilde 0128 J 004A
Jcircumflex 0134 K 004B Kappa 039A Kcommaaccent 0136 L 004C Lacute 0139 Lambda 039B
Lcaron 013D Lcommaaccent 013B Ldot 013F Lslash 0141 M 004D Mu 039C N 004E Nacute 0143
Ncaron 0147 Ncommaaccent 0145 Ntilde 00D1 Nu 039D O 004F OE 0152 Oacute 00D3 Obreve 014E
Ocircumflex 00D4 Odieresis 00D6 Ograve 00D2 Ohungarumlaut 0150 Omacron 014C Omega 2126
Omegatonos 038F Omicron 039F Omicrontonos 038C Oslash 00D8 Oslashacute 01FE Otilde 00D5
P 0050 Phi 03A6 Pi 03A0 Psi 03A8 Q 0051 R 0052 Racute 0154 Rcaron 0158 Rcommaaccent 0156
Rfraktur 211C Rho 03A1 S 0053 SF010000 250C SF020000 2514 SF030000 2510 SF040000 2518
SF050000 253C SF060000 252C SF070000 2534 SF080000 251C SF090000 2524 SF100000 2500
SF110000 2502 SF190000 2561 SF200000 2562 SF210000 2556 SF220000 2555 SF230000 2563
SF240000 2551 SF250000 2557 SF260000 255D SF270000 255C SF280000 255B SF360000 255E
SF370000 255F SF380000 255A SF390000 2554 SF400000 2569 SF410000 2566 SF420000 2560
SF430000 2550 SF440000 256C SF450000 2567 SF460000 2568 SF470000 2564 SF480000 2565
SF490000 2559 SF500000 2558 SF510000 2552 SF520000 2553 SF530000 256B SF540000 256A
Sacute 015A Scaron 0160 Scedilla 015E Scircumflex 015C Scommaaccent 0218 Sigma 03A3
T 0054 Tau 03A4 Tbar 0166 Tcaron 0164 Tcommaaccent 0162 Theta 0398 Thorn 00DE U 0055
Uacute 00DA Ubreve 016C Ucircumflex 00DB Udieresis 00DC Ugrave 00D9 Uhungarumlaut 0170
Umacron 016A Uogonek 0172 Upsilon 03A5 Upsilon1 03D2 Upsilondieresis 03AB
Upsilontonos 038E Uring 016E Utilde 0168 V 0056 W 0057 Wacute 1E82 Wcircumflex 0174
Wdieresis 1E84 Wgrave 1E80 X 0058 Xi 039E Y 0059 Yacute 00DD Ycircumflex 0176
Ydieresis 0178 Ygrave 1EF2 Z 005A Zacute 0179 Zcaron 017D Zdotaccent 017B Zeta 0396
a 0061 aacute 00E1 abreve 0103 acircumflex 00E2 acute 00B4 adieresis 00E4 ae 00E6
aeacute 01FD afii00208 2015 afii10017 0410 afii10018 0411 afii10019 0412 afii10020 0413
afii10021 0414 afii10022 0415 afii10023 0401 afii10024 0416 afii10025 0417
afii10026 0418 afii10027 0419 afii10028 041A afii10029 041B afii10030 041C
afii10031 041D afii10032 041E afii10033 041F afii10034 0420 afii10035 0421
afii10036 0422 afii10037 0423 afii10038 0424 afii10039 0425 afii10040 0426
afii10041 0427 afii10042 0428 afii10043 0429 afii10044 042A afii10045 042B
afii10046 042C afii10047 042D afii10048 042E afii10049 042F afii10050 0490
afii10051 0402 afii10052 0403 afii10053 0404 afii10054 0405 afii10055 0406
afii10056 0407 afii10057 0408 afii10058 0409 afii10059 040A afii10060 040B
afii10061 040C afii10062 040E afii10065 0430 afii10066 0431 afii10067 0432
afii10068 0433 afii10069 0434 afii10070 0435 afii10071 0451 afii10072 0436
afii10073 0437 afii10074 0438 afii10075 0439 afii10076 043A afii10077 043B
afii10078 043C afii10079 043D afii10080 043E afii10081 043F afii10082 0440
afii10083 0441 afii10084 0442 afii10085 0443 afii10086 0444 afii10087 0445
afii10088 0446 afii10089 0447 afii10090 0448 afii10091 0449 afii10092 044A
afii10093 044B afii10094 044C afii10095 044D afii10096 044E afii10097 044F
afii10098 0491 afii10099 0452 afii10100 0453 afii10101 0454 afii10102 0455
afii10103 0456 afii10104 0457 afii10105 0458 afii10106 0459 afii10107 045A
afii10108 045B afii10109 045C afii10110 045E afii10145 040F afii10193 045F
afii10846 04D9 afii61248 2105 afii61289 2113 afii61352 2116 agrave 00E0 aleph 2135
alpha 03B1 alphatonos 03AC amacron 0101 ampersand 0026 angle 2220 angleleft 2329
angleright 232A aogonek 0105 apple F8FF approxequal 2248 aring 00E5 aringacute 01FB
arrowboth 2194 arrowdblboth 21D4 arrowdbldown 21D3 arrowdblleft 21D0 arrowdblright 21D2
arrowdblup 21D1 arrowdown 2193 arrowhorizex F8E7 arrowleft 2190 arrowright 2192
arrowup 2191 arrowupdn 2195 arrowupdnbse 21A8 arrowvertex F8E6 asciicircum 005E
asciitilde 007E asterisk 002A asteriskmath 2217 at 0040 atilde 00E3 b 0062
backslash 005C bar 007C beta 03B2 block 2588 braceex F8F4 braceleft 007B
braceleftbt F8F3 braceleftmid F8F2 bracelefttp F8F1 braceright 007D bracerightbt F8FE
bracerightmid F8FD bracerighttp F8FC bracketleft 005B bracketleftbt F8F0
bracketleftex F8EF bracketlefttp F8EE bracketright 005D bracketrightbt F8FB
bracketrightex F8FA bracketrighttp F8F9 breve 02D8 brokenbar 00A6 bullet 2022 c 0063
cacute 0107 caron 02C7 carriagereturn 21B5 ccaron 010D ccedilla 00E7 ccircumflex 0109
cdotaccent 010B cedilla 00B8 cent 00A2 chi 03C7 circle 25CB circlemultiply 2297
circleplus 2295 circumflex 02C6 club 2663 colon 003A comma 002C congruent 2245
copyright 00A9 copyrightsans F8E9 copyrightserif F6D9 currency 00A4 d 0064 dagger 2020
daggerdbl 2021 dcaron 010F dcroat 0111 degree 00B0 delta 03B4 diamond 2666 dieresis 00A8
dieresistonos 0385 divide 00F7 dkshade 2593 dnblock 2584 dollar 0024 dotaccent 02D9
dotlessi 0131 dotmath 22C5 e 0065 eacute 00E9 ebreve 0115 ecaron 011B ecircumflex 00EA
edieresis 00EB edotaccent 0117 egrave 00E8 eight 0038 eightsuperior 2078 element 2208
ellipsis 2026 emacron 0113 emdash 2014 emptyset 2205 endash 2013 eng 014B eogonek 0119
epsilon 03B5 epsilontonos 03AD equal 003D equivalence 2261 estimated 212E eta 03B7
etatonos 03AE eth 00F0 exclam 0021 exclamdbl 203C exclamdown 00A1 existential 2203
f 0066 female 2640 ff FB00 ffi FB03 ffl FB04 fi FB01 filledbox 25A0 filledrect 25AC
five 0035 fiveeighths 215D fivesuperior 2075 fl FB02 florin 0192 four 0034
foursuperior 2074 fraction 2044 franc 20A3 g 0067 gamma 03B3 gbreve 011F
gcircumflex 011D gcommaaccent 0123 gdotaccent 0121 germandbls 00DF gradient 2207
grave 0060 greater 003E greaterequal 2265 guillemotleft 00AB guillemotright 00BB
guilsinglleft 2039 guilsinglright 203A h 0068 hbar 0127 hcircumflex 0125 heart 2665
house 2302 hungarumlaut 02DD hyphen 002D i 0069 iacute 00ED ibreve 012D icircumflex 00EE
idieresis 00EF igrave 00EC ij 0133 imacron 012B infinity 221E integral 222B
integralbt 2321 integralex F8F5 integraltp 2320 intersection 2229 invbullet 25D8
invcircle 25D9 invsmileface 263B iogonek 012F iota 03B9 iotadieresis 03CA
iotadieresistonos 0390 iotatonos 03AF itilde 0129 j 006A jcircumflex 0135 k 006B
kappa 03BA kcommaaccent 0137 kgreenlandic 0138 l 006C lacute 013A lambda 03BB
lcaron 013E lcommaaccent 013C ldot 0140 less 003C lessequal 2264 lfblock 258C lira 20A4
logicaland 2227 logicalnot 00AC logicalor 2228 longs 017F lozenge 25CA lslash 0142
ltshade 2591 m 006D macron 00AF male 2642 minus 2212 minute 2032 mu 00B5 multiply 00D7
musicalnote 266A musicalnotedbl 266B n 006E nacute 0144 napostrophe 0149 ncaron 0148
ncommaaccent 0146 nine 0039 ninesuperior 2079 notelement 2209 notequal 2260
notsubset 2284 nsuperior 207F ntilde 00F1 nu 03BD numbersign 0023 o 006F oacute 00F3
obreve 014F ocircumflex 00F4 odieresis 00F6 oe 0153 ogonek 02DB ograve 00F2
ohungarumlaut 0151 omacron 014D omega 03C9 omega1 03D6 omegatonos 03CE omicron 03BF
omicrontonos 03CC one 0031 oneeighth 215B onehalf 00BD onequarter 00BC onesuperior 00B9
openbullet 25E6 ordfeminine 00AA ordmasculine 00BA orthogonal 221F oslash 00F8
oslashacute 01FF otilde 00F5 p 0070 paragraph 00B6 parenleft 0028 parenleftbt F8ED
parenleftex F8EC parenlefttp F8EB parenright 0029 parenrightbt F8F8 parenrightex F8F7
parenrighttp F8F6 partialdiff 2202 percent 0025 period 002E periodcentered 00B7
perpendicular 22A5 perthousand 2030 peseta 20A7 phi 03C6 phi1 03D5 pi 03C0 plus 002B
plusminus 00B1 product 220F propersubset 2282 propersuperset 2283 proportional 221D
psi 03C8 q 0071 question 003F questiondown 00BF quotedbl 0022 quotedblbase 201E
quotedblleft 201C quotedblright 201D quoteleft 2018 quotereversed 201B quoteright 2019
quotesinglbase 201A quotesingle 0027 r 0072 racute 0155 radical 221A radicalex F8E5
rcaron 0159 rcommaaccent 0157 reflexsubset 2286 reflexsuperset 2287 registered 00AE
registersans F8E8 registerserif F6DA revlogicalnot 2310 rho 03C1 ring 02DA rtblock 2590
s 0073 sacute 015B scaron 0161 scedilla 015F scircumflex 015D scommaaccent 0219
second 2033 section 00A7 semicolon 003B seven 0037 seveneighths 215E sevensuperior 2077
shade 2592 sigma 03C3 sigma1 03C2 similar 223C six 0036 sixsuperior 2076 slash 002F
smileface 263A space 0020 spade 2660 sterling 00A3 suchthat 220B summation 2211 sun 263C
t 0074 tau 03C4 tbar 0167 tcaron 0165 tcommaaccent 0163 therefore 2234 theta 03B8
theta1 03D1 thorn 00FE three 0033 threeeighths 215C threequarters 00BE
threesuperior 00B3 tilde 02DC tonos 0384 trademark 2122 trademarksans F8EA
trademarkserif F6DB triagdn 25BC triaglf 25C4 triagrt 25BA triagup 25B2 two 0032
twosuperior 00B2 u 0075 uacute 00FA ubreve 016D ucircumflex 00FB udieresis 00FC
ugrave 00F9 uhungarumlaut 0171 umacron 016B underscore 005F underscoredbl 2017
union 222A universal 2200 uogonek 0173 upblock 2580 upsilon 03C5 upsilondieresis 03CB
upsilondieresistonos 03B0 upsilontonos 03CD uring 016F utilde 0169 v 0076 w 0077
wacute 1E83 wcircumflex 0175 wdieresis 1E85 weierstrass 2118 wgrave 1E81 x 0078 xi 03BE
y 0079 yacute 00FD ycircumflex 0177 ydieresis 00FF yen 00A5 ygrave 1EF3 z 007A
zacute 017A zcaron 017E zdotaccent 017C zero 0030 zerosuperior 2070 zeta 03B6
"""

# ZapfDingbats: the names of its glyphs (the Adobe Glyph List for ITC Zapf Dingbats).
DINGBATS_LIST = """
a1 2701 a2 2702 a3 2704 a4 260E a5 2706 a6 271D a7 271E a8 271F a9 2720 a10 2721
a11 261B a12 261E a13 270C a14 270D a15 270E a16 270F a17 2711 a18 2712 a19 2713
a20 2714 a21 2715 a22 2716 a23 2717 a24 2718 a25 2719 a26 271A a27 271B a28 271C
a29 2722 a30 2723 a31 2724 a32 2725 a33 2726 a34 2727 a35 2605 a36 2729 a37 272A
a38 272B a39 272C a40 272D a41 272E a42 272F a43 2730 a44 2731 a45 2732 a46 2733
a47 2734 a48 2735 a49 2736 a50 2737 a51 2738 a52 2739 a53 273A a54 273B a55 273C
a56 273D a57 273E a58 273F a59 2740 a60 2741 a61 2742 a62 2743 a63 2744 a64 2745
a65 2746 a66 2747 a67 2748 a68 2749 a69 274A a70 274B a71 25CF a72 274D a73 25A0
a74 274F a75 2751 a76 25B2 a77 25BC a78 25C6 a79 2756 a81 25D7 a82 2758 a83 2759
a84 275A a85 276F a86 2771 a87 2772 a88 2773 a89 2768 a90 2769 a91 276C a92 276D
a93 276A a94 276B a95 2774 a96 2775 a97 275B a98 275C a99 275D a100 275E a101 2761
a102 2762 a103 2763 a104 2764 a105 2710 a106 2765 a107 2766 a108 2767 a109 2660
a110 2665 a111 2666 a112 2663 a117 2709 a118 2708 a119 2707 a120 2460 a121 2461
a122 2462 a123 2463 a124 2464 a125 2465 a126 2466 a127 2467 a128 2468 a129 2469
a130 2776 a131 2777 a132 2778 a133 2779 a134 277A a135 277B a136 277C a137 277D
a138 277E a139 277F a140 2780 a141 2781 a142 2782 a143 2783 a144 2784 a145 2785
a146 2786 a147 2787 a148 2788 a149 2789 a150 278A a151 278B a152 278C a153 278D
a154 278E a155 278F a156 2790 a157 2791 a158 2792 a159 2793 a160 2794 a161 2192
a162 27A3 a163 2194 a164 2195 a165 2799 a166 279B a167 279C a168 279D a169 279E
a170 279F a171 27A0 a172 27A1 a173 27A2 a174 27A4 a175 27A5 a176 27A6 a177 27A7
a178 27A8 a179 27A9 a180 27AB a181 27AD a182 27AF a183 27B2 a184 27B3 a185 27B5
a186 27B8 a187 27BA a188 27BB a189 27BC a190 27BD a191 27BE a192 279A a193 27AA
a194 27B6 a195 27B9 a196 2798 a197 27B4 a198 27B7 a199 27AC a200 27AE a201 27B1
a202 2703 a203 2750 a204 2752 a205 276E a206 2770
"""

# Names whose glyph also stands for a second character: Symbol's letters D, W and m are
# the Greek Delta, Omega and mu (the list gives the increment, ohm and micro signs).
SECOND_CHARACTERS = {"Delta": 0x394, "Omega": 0x3A9, "mu": 0x3BC}

# Glyph names of codes 127..186 of the text fonts, the order of GermanVec in the
# PostScript prolog; 187 is the copyright sign.
GERMAN_VEC = """Adieresis Odieresis Udieresis adieresis odieresis udieresis germandbls
Aring Oslash AE aring oslash ae Ntilde ntilde Ccedilla ccedilla Edieresis Idieresis
edieresis idieresis Aacute Eacute Iacute Oacute Uacute aacute eacute iacute oacute
uacute Agrave Egrave Igrave Ograve Ugrave agrave egrave igrave ograve ugrave
Acircumflex Ecircumflex Icircumflex Ocircumflex Ucircumflex acircumflex ecircumflex
icircumflex ocircumflex ucircumflex Atilde atilde Otilde otilde Yacute yacute ydieresis
exclamdown questiondown copyright""".split()
assert len(GERMAN_VEC) == 61


def parse_list(text):
    words = text.split()
    return {words[i]: int(words[i + 1], 16) for i in range(0, len(words), 2)}


AGL = parse_list(GLYPH_LIST)
DINGBATS = parse_list(DINGBATS_LIST)


def characters(name, dingbats):
    """Characters of a glyph name by the glyph list rules, best first; [] for none."""
    if "." in name or "_" in name:
        return []
    m = re.fullmatch(r"uni([0-9A-F]{4})", name)
    if m is None:
        m = re.fullmatch(r"u([0-9A-F]{4,6})", name)
    if m is not None:
        v = int(m.group(1), 16)
        return [] if 0xD800 <= v <= 0xDFFF or v > 0x10FFFF else [v]
    table = DINGBATS if dingbats and name in DINGBATS else AGL
    if name not in table:
        return []
    out = [table[name]]
    if name in SECOND_CHARACTERS:
        out.append(SECOND_CHARACTERS[name])
    return out


class Afm:
    def __init__(self, path):
        self.header = {}
        self.glyphs = []  # (code, width, name, box) in file order
        self.kerns = []   # (left name, right name, value)
        with open(path, encoding="latin-1") as f:
            in_metrics = False
            for line in f:
                line = line.strip()
                if line.startswith("StartCharMetrics"):
                    in_metrics = True
                elif line.startswith("EndCharMetrics"):
                    in_metrics = False
                elif in_metrics and line.startswith("C "):
                    fields = {}
                    for part in line.split(";"):
                        words = part.split()
                        if words:
                            fields[words[0]] = words[1:]
                    box = [int(v) for v in fields["B"]] if "B" in fields else [0, 0, 0, 0]
                    self.glyphs.append((int(fields["C"][0]), round(float(fields["WX"][0])),
                                        fields["N"][0], box))
                elif line.startswith("KPX "):
                    _, left, right, value = line.split()
                    self.kerns.append((left, right, round(float(value))))
                elif not in_metrics and " " in line:
                    key, value = line.split(" ", 1)
                    self.header.setdefault(key, value)


def stem_width(t1_path):
    """StdVW of the font program's private dictionary (eexec-encrypted), 0 if unknown."""
    try:
        with open(t1_path, "rb") as f:
            data = f.read()
    except OSError:
        return 0
    at = data.find(b"eexec")
    if at < 0:
        return 0
    at += 5
    while data[at:at + 1] in (b"\r", b"\n", b" ", b"\t"):
        at += 1
    r, plain = 55665, bytearray()
    for c in data[at:at + 4096]:
        plain.append(c ^ (r >> 8))
        r = ((c + r) * 52845 + 22719) & 0xFFFF
    m = re.search(rb"/StdVW\s*\[\s*([0-9.]+)", bytes(plain[4:]))
    return round(float(m.group(1))) if m else 0


def font_table(afm, dingbats):
    """Glyphs as {character: (width, name)}: per character the glyph whose name gives it
    most directly (uniXXXX, then the list's first character, then a second one), the
    first in the file among equals."""
    best = {}
    for order, (_, width, name, _) in enumerate(afm.glyphs):
        explicit = name.startswith("u") and name not in AGL and name not in DINGBATS
        for rank, u in enumerate(characters(name, dingbats)):
            key = (0 if explicit else 1 + rank, order)
            if u not in best or key < best[u][0]:
                best[u] = (key, width, name)
    return {u: (w, n) for u, (_, w, n) in best.items()}


def descriptor(afm, stemv, symbolic, family_kind, italic, fixed):
    boxes = {name: box for _, _, name, box in afm.glyphs}
    bbox = [int(v) for v in afm.header["FontBBox"].split()]
    cap = int(afm.header.get("CapHeight", "0")) or boxes.get("H", [0, 0, 0, 700])[3]
    xh = int(afm.header.get("XHeight", "0")) or boxes.get("x", [0, 0, 0, 500])[3]
    # The AFM files give no ascender and descender: those of d and p stand for them.
    ascent = int(afm.header.get("Ascender", "0")) or boxes.get("d", bbox)[3]
    descent = int(afm.header.get("Descender", "0")) or boxes.get("p", bbox)[1]
    flags = 0
    if fixed:
        flags |= 1
    if family_kind == "serif":
        flags |= 2
    flags |= 4 if symbolic else 32
    if family_kind == "script":
        flags |= 8
    if italic:
        flags |= 64
    angle = float(afm.header.get("ItalicAngle", "0"))
    return cap, (flags, bbox, angle, ascent, descent, cap, xh, stemv or 80)


def c_string(s):
    return '"' + s.replace("\\", "\\\\").replace('"', '\\"') + '"'


def number_lines(items, width=92, indent="    "):
    lines, line = [], indent
    for item in items:
        if len(line) + len(item) + 1 > width and line.strip():
            lines.append(line.rstrip())
            line = indent
        line += item + " "
    if line.strip():
        lines.append(line.rstrip())
    return lines


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    font_dir = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/fonts/type1/urw-base35"
    out_path = sys.argv[2] if len(sys.argv) > 2 else os.path.join(
        here, "..", "..", "text", "ps_font_metrics.cpp")

    fonts = []
    for ps_name, urw, family, weight, italic, std14 in FONTS:
        afm = Afm(os.path.join(font_dir, urw + ".afm"))
        symbolic = family in ("symbol", "dingbats")
        table = font_table(afm, family == "dingbats")
        cap, desc = descriptor(afm, stem_width(os.path.join(font_dir, urw + ".t1")), symbolic,
                               FAMILIES[family][1], italic,
                               afm.header.get("IsFixedPitch") == "true")
        names_here = {n for _, n in table.values()}
        kerns = [(l, r, v) for l, r, v in afm.kerns
                 if l in names_here and r in names_here and v != 0]
        builtin = []
        if symbolic:
            builtin = [(code, width, name) for code, width, name, _ in afm.glyphs
                       if 32 <= code <= 126 and name in names_here]
        else:
            for name in GERMAN_VEC:
                assert name in names_here, (ps_name, name)
        fonts.append(dict(name=ps_name, urw=urw, family=family, weight=weight,
                          italic=italic, std14=std14, symbolic=symbolic, cap=cap,
                          desc=desc, table=table, kerns=kerns, builtin=builtin))

    pool = sorted({n for f in fonts for _, n in f["table"].values()})
    index = {n: i for i, n in enumerate(pool)}
    assert len(pool) < 65536

    def twin(i):
        f = fonts[i]
        if f["symbolic"]:
            return -1
        if f["italic"]:
            return i
        for j, g in enumerate(fonts):
            if g["family"] == f["family"] and g["weight"] == f["weight"] and g["italic"]:
                return j
        return -1

    out = [
        "// Generated by tools/fonts/gen_ps_fonts.py, do not edit.",
        "// Metrics of the 35 standard PostScript fonts, read from the AFM files of their URW",
        "// twins (see tools/fonts/SOURCES_PS_FONTS.md): per font its glyphs sorted by",
        "// character as {Unicode, advance width, glyph name index}, its kerning pairs sorted",
        "// by glyph name index as {left, right, value}, widths and values in thousandths of",
        "// the em.",
        "",
        '#include "text/ps_font_data.h"',
        "",
        "namespace zorvel {",
        "namespace {",
        "",
    ]
    for i, f in enumerate(fonts):
        out.append("// %s (%s.afm)" % (f["name"], f["urw"]))
        out.append("constexpr PsGlyph kGlyphs%d[] = {" % i)
        items = ["{0x%X,%d,%d}," % (u, w, index[n]) for u, (w, n) in sorted(f["table"].items())]
        out += number_lines(items)
        out.append("};")
        if f["kerns"]:
            out.append("constexpr PsKern kKerns%d[] = {" % i)
            pairs = sorted((index[l], index[r], v) for l, r, v in f["kerns"])
            out += number_lines("{%d,%d,%d}," % p for p in pairs)
            out.append("};")
        if f["builtin"]:
            out.append("// The built-in encoding at codes 32..126: {code, width, glyph name index}.")
            out.append("constexpr PsGlyph kBuiltin%d[] = {" % i)
            out += number_lines("{%d,%d,%d}," % (c, w, index[n]) for c, w, n in f["builtin"])
            out.append("};")
        out.append("")
    out.append("}  // namespace")
    out.append("")
    out.append("// Glyph names of all fonts, sorted.")
    out.append("constinit const std::string_view kPsGlyphNames[] = {")
    out += number_lines(c_string(n) + "," for n in pool)
    out.append("};")
    out.append("constinit const int kPsGlyphNameCount = %d;" % len(pool))
    out.append("")
    out.append("constinit const PsFontData kPsFonts[kPsFontCount] = {")
    for i, f in enumerate(fonts):
        flags, bbox, angle, ascent, descent, cap, xh, stemv = f["desc"]
        out.append("    {{%s, %s," % (c_string(f["name"]), c_string(f["urw"])))
        out.append("      %s," % c_string(FAMILIES[f["family"]][0]))
        out.append("      %d, %s, %s, %s, %d, %d}," % (
            f["weight"], str(f["italic"]).lower(), str(f["std14"]).lower(),
            str(f["symbolic"]).lower(), f["cap"], twin(i)))
        out.append("     {%d, {%d, %d, %d, %d}, %s, %d, %d, %d, %d, %d}," % (
            flags, *bbox, repr(angle), ascent, descent, cap, xh, stemv))
        out.append("     kGlyphs%d, %s, %s}," % (
            i, "kKerns%d" % i if f["kerns"] else "{}",
            "kBuiltin%d" % i if f["builtin"] else "{}"))
    out.append("};")
    out.append("")
    out.append("}  // namespace zorvel")
    text = "\n".join(out) + "\n"
    with open(out_path, "w") as f:
        f.write(text)
    print("%s: %d names, %d glyphs, %d kerning pairs" % (
        out_path, len(pool), sum(len(f["table"]) for f in fonts),
        sum(len(f["kerns"]) for f in fonts)), file=sys.stderr)
    return len(pool)


if __name__ == "__main__":
    main()
