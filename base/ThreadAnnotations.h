#pragma once

/// Clang checks these thread rules with -Wthread-safety; other compilers ignore them.
#if defined(__clang__)
#define QUILLON_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define QUILLON_THREAD_ANNOTATION(x)
#endif

#define CAPABILITY(x) QUILLON_THREAD_ANNOTATION(capability(x))
#define SCOPED_CAPABILITY QUILLON_THREAD_ANNOTATION(scoped_lockable)
#define GUARDED_BY(x) QUILLON_THREAD_ANNOTATION(guarded_by(x))
#define PT_GUARDED_BY(x) QUILLON_THREAD_ANNOTATION(pt_guarded_by(x))
#define REQUIRES(...) QUILLON_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define REQUIRES_SHARED(...) QUILLON_THREAD_ANNOTATION(requires_shared_capability(__VA_ARGS__))
#define ACQUIRE(...) QUILLON_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define ACQUIRE_SHARED(...) QUILLON_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define RELEASE(...) QUILLON_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define RELEASE_SHARED(...) QUILLON_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))
#define RELEASE_GENERIC(...) QUILLON_THREAD_ANNOTATION(release_generic_capability(__VA_ARGS__))
#define RETURNS_CAPABILITY(x) QUILLON_THREAD_ANNOTATION(lock_returned(x))
#define EXCLUDES(...) QUILLON_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define NO_THREAD_SAFETY_ANALYSIS QUILLON_THREAD_ANNOTATION(no_thread_safety_analysis)
