%!PS-Adobe-2.0
%%BoundingBox: 21 28 574 810
%%Creator: ZORVEL  10.6 L
%%CreationDate: 14.11.2023 , 22:13:20
%%Pages: (atend)
%%EndComments
%%BeginProlog
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
%%EndProlog
%%Page: 1 1
initgraphics
  150 cm   200 cm translate   1.000000  1.000000 scale
0 0 3898 5514 0 0 0 e 
2 setlinecap 2 setlinejoin
5.00 cm setlinewidth 255 255 255 f 557 557 u 3343 4829 d p 255 255 0 f 3343 557 
u 557 4829 d p copypage 
%%Page: 1 2
0 0 3898 5514 0 0 0 e 
2 setlinecap 2 setlinejoin 5 cm setlinewidth
255 255 0 f 10.00 cm setlinewidth 1950 557 u 1950 4829 d p gsave showpage 
grestore 
%%Trailer 
%%Pages: 2
%%EOF 
