/* Tivlib: time values, German date and time texts, calendar fields and named stopwatches. */
#ifndef TIVLIB_CLOCK_H
#define TIVLIB_CLOCK_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

#define CLOCK_TIMER_MAX 100 /* timers a process can open */
#define CLOCK_NAME_MAX 79   /* characters of a timer's name */

/* Calendar fields in local time. */
typedef struct clock_fields {
  int32_t second;  /* 0 to 59 */
  int32_t minute;  /* 0 to 59 */
  int32_t hour;    /* 0 to 23 */
  int32_t day;     /* day of the month, from 1 */
  int32_t month;   /* 0 for January to 11 */
  int32_t year;    /* years since 1900 */
  int32_t weekday; /* 0 for Sunday */
  int32_t yearday; /* 0 for 1 January */
} clock_fields;

/* A named stopwatch; callers hold it as an opaque pointer. Timers live until the process ends. */
typedef struct clock_timer clock_timer;

/* Time values are seconds since 1970-01-01 00:00:00 UTC; as an argument, 0 means now.
 * clock_date and clock_time give a text in a static buffer of their own, valid until the
 * next call of the same operation. */
TIV_API int32_t clock_value(void) TIV_NOEXCEPT;
TIV_API const char *clock_date(int32_t value, int32_t format) TIV_NOEXCEPT;
TIV_API const char *clock_time(int32_t value, int32_t format) TIV_NOEXCEPT;
TIV_API void clock_makestruct(int32_t value, clock_fields *fields) TIV_NOEXCEPT;
TIV_API int32_t clock_makevalue(clock_fields *fields) TIV_NOEXCEPT;

/* Stopwatches. Every operation taking a timer accepts nil. */
TIV_API clock_timer *clock_timeropen(const char *name) TIV_NOEXCEPT;
TIV_API void clock_timerreset(clock_timer *timer) TIV_NOEXCEPT;
TIV_API void clock_timerstart(clock_timer *timer) TIV_NOEXCEPT;
TIV_API void clock_timerstop(clock_timer *timer) TIV_NOEXCEPT;
TIV_API int32_t clock_timerget(const clock_timer *timer) TIV_NOEXCEPT;
TIV_API void clock_timertable(const char *filename, int32_t append) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_CLOCK_H */
