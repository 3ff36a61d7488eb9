#pragma once

#if defined(__cplusplus)
extern "C" {
#endif

/// How many checks of a program in C99 fail.
int failures_in_strict_c(void);

#if defined(__cplusplus)
}
#endif
