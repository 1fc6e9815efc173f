#pragma once

// SMODEL_SANITIZED: whether a sanitizer brings its own malloc, and watches it. Compilers tell that in two ways.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SMODEL_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define SMODEL_SANITIZED 1
#endif
#endif
#ifndef SMODEL_SANITIZED
#define SMODEL_SANITIZED 0
#endif
