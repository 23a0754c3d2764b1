#pragma once

// The C library's own header, which the compile checks replace: an Apple processor's int64_t is another type than Linux's.

typedef __INT8_TYPE__ int8_t;
typedef __INT16_TYPE__ int16_t;
typedef __INT32_TYPE__ int32_t;
typedef __INT64_TYPE__ int64_t;
