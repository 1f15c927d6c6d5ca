// SPDX-License-Identifier: MIT
// Preloaded into the program: it can start no thread as long as the file exists that
// VELLORA_NO_THREADS names, as on a system that has none left.

#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                              void *(*begin)(void *), void *given)
{
    const char *file = std::getenv("VELLORA_NO_THREADS");
    if (file && access(file, F_OK) == 0) {
        return EAGAIN;
    }
    static const auto real =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return real(thread, attributes, begin, given);
}
