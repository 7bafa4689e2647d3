/* A host written in C, for a C++ program to run. */
#ifndef TESTS_ABI_HOST_IN_C_H
#define TESTS_ABI_HOST_IN_C_H

#ifdef __cplusplus
extern "C" {
#endif

/* Goes once through every call of the library that is linked; 0, or the line that did not hold. */
int HostInC(void);

#ifdef __cplusplus
}
#endif

#endif
