#pragma once
// Whether a sanitizer watches the test: memory is then not what it is otherwise.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CADGEOM_TEST_IS_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CADGEOM_TEST_IS_SANITIZED
#endif
#endif
