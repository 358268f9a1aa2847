/* Tivlib: last-in-first-out stack of opaque words. Every operation accepts a nil stack. */
#ifndef TIVLIB_STACK_H
#define TIVLIB_STACK_H

#include <tivlib/types.h>

TIV_BEGIN_DECLS

typedef struct stack_handle stack_handle;

TIV_API stack_handle *stack_open(void) TIV_NOEXCEPT;
TIV_API void stack_push(stack_handle *stack, intptr_t value) TIV_NOEXCEPT;
TIV_API intptr_t stack_pop(stack_handle *stack) TIV_NOEXCEPT;
TIV_API intptr_t stack_get(stack_handle *stack) TIV_NOEXCEPT;
TIV_API void stack_close(stack_handle *stack) TIV_NOEXCEPT;

TIV_END_DECLS

#endif /* TIVLIB_STACK_H */
