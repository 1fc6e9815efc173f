#pragma once

/** Marks a class or function as part of the library's interface; all else stays hidden. */
#define SM_API __attribute__((visibility("default")))
