#pragma once

/// \file
/// An operation repeated with one fault of the system each time, until it meets none any more.

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <new>

#include "msg.h"
#include "support/faulty_system.h"

/// Calls `prepare`, then `operation` with the first, second, ... call of the system failing, and `judge` with its result
/// each time; ends when no call has failed, and expects that some had.
template <class RESULT>
void with_each_call_failing(int error, const std::function<void()>& prepare, const std::function<RESULT()>& operation,
                            const std::function<void(RESULT result, const char* call)>& judge) {
    std::size_t number = 1;
    for (;; ++number) {
        prepare();
        RESULT result{};
        const char* call = "";
        bool happened = false;
        {
            const FAILING_CALL fault(number, error);
            result = operation();
            happened = fault.happened();
            call = fault.name();
        }
        SCOPED_TRACE(testing::Message() << "call " << number << ", " << call << ", error " << error);
        judge(result, call);
        if (!happened || testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GT(number, 1U);
}

/// The same with the allocations of libraries in C, one of them or all from one on.
inline void with_each_malloc_failing(const std::function<void()>& prepare, const std::function<void()>& operation,
                                     const std::function<void()>& judge, bool all_later = false) {
    std::size_t number = 1;
    for (bool happened = true; happened && !testing::Test::HasFailure(); ++number) {
        SCOPED_TRACE(testing::Message() << "malloc " << number);
        prepare();
        {
            const FAILING_MALLOC fault(number, all_later);
            operation();
            happened = fault.happened();
        }
        judge();
    }
    EXPECT_GT(number, 2U);
}

/// The same with allocations. Of many, the later ones fail in growing steps. An operation may also end by an exception;
/// `judge` learns whether it ran to its end.
inline void with_each_allocation_failing(const std::function<void()>& prepare, const std::function<void()>& operation,
                                         const std::function<void(bool ended)>& judge, std::size_t thinning = 64) {
    std::size_t number = 1;
    for (;; number += 1 + number / thinning) {
        prepare();
        bool ended = true;
        bool happened = false;
        {
            const FAILING_ALLOCATION fault(number);
            try {
                operation();
            } catch (const std::bad_alloc&) {
                ended = false;
            } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
                ended = false;
            }
            happened = fault.happened();
        }
        SCOPED_TRACE(testing::Message() << "allocation " << number);
        judge(ended);
        if (!happened || testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GT(number, 1U);
}
