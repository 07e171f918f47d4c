/* SPDX-License-Identifier: MIT */
/* The part of macOS's <xlocale.h> that libc++ asks for, beside musl's headers. Declarations only: nothing runs. */
#pragma once

#include <ctype.h>
#include <locale.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <wchar.h>
#include <wctype.h>

#ifdef __cplusplus
extern "C" {
#endif

#define LC_COLLATE_MASK 1
#define LC_CTYPE_MASK 2
#define LC_MONETARY_MASK 4
#define LC_NUMERIC_MASK 8
#define LC_TIME_MASK 16
#define LC_MESSAGES_MASK 32
#define LC_ALL_MASK 63

extern int ___mb_cur_max_l(locale_t);
#define MB_CUR_MAX_L(x) (___mb_cur_max_l(x))

struct lconv* localeconv_l(locale_t);
wint_t btowc_l(int, locale_t);
int wctob_l(wint_t, locale_t);
size_t mbrlen_l(const char*, size_t, mbstate_t*, locale_t);
size_t mbrtowc_l(wchar_t*, const char*, size_t, mbstate_t*, locale_t);
size_t wcrtomb_l(char*, wchar_t, mbstate_t*, locale_t);
int mbtowc_l(wchar_t*, const char*, size_t, locale_t);
size_t mbsnrtowcs_l(wchar_t*, const char**, size_t, size_t, mbstate_t*, locale_t);
size_t wcsnrtombs_l(char*, const wchar_t**, size_t, size_t, mbstate_t*, locale_t);
size_t mbsrtowcs_l(wchar_t*, const char**, size_t, mbstate_t*, locale_t);
int snprintf_l(char*, size_t, locale_t, const char*, ...);
int asprintf_l(char**, locale_t, const char*, ...);
int sscanf_l(const char*, locale_t, const char*, ...);
double strtod_l(const char*, char**, locale_t);
float strtof_l(const char*, char**, locale_t);
long double strtold_l(const char*, char**, locale_t);
long long strtoll_l(const char*, char**, int, locale_t);
unsigned long long strtoull_l(const char*, char**, int, locale_t);

typedef unsigned int __uint32_t;
#define _CTYPE_A 0x100L
#define _CTYPE_C 0x200L
#define _CTYPE_D 0x400L
#define _CTYPE_G 0x800L
#define _CTYPE_L 0x1000L
#define _CTYPE_P 0x2000L
#define _CTYPE_S 0x4000L
#define _CTYPE_U 0x8000L
#define _CTYPE_X 0x10000L
#define _CTYPE_B 0x20000L
#define _CTYPE_R 0x40000L
int __maskrune(int, unsigned long);
int __toupper(int);
int __tolower(int);
int isascii(int);

#ifdef __cplusplus
}
#endif
