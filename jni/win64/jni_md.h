/* The machine-dependent part of jni.h for 64-bit Windows, for cross-building zorjava.dll
 * with the JDK headers of a Linux system (whose own jni_md.h describes Linux). The
 * native methods are exported by zorjava.def, so JNIEXPORT marks nothing. */
#ifndef ZORVEL_JNI_MD_H
#define ZORVEL_JNI_MD_H

#define JNIEXPORT
#define JNIIMPORT __declspec(dllimport)
#define JNICALL __stdcall

typedef int jint;  /* 32 bits, as Windows' long, so Java int arrays are C int arrays */
typedef long long jlong;
typedef signed char jbyte;

#endif
