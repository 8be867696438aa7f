#pragma once

#include <exception>
#include <type_traits>
#include <utility>

/// The one way in which a public operation turns an exception into its failure result. Usually the
/// exception is std::bad_alloc.
///
/// Both functions catch std::exception and nothing else. wxThread::Kill() unwinds the stack of a
/// thread; a catch-all that stops the unwinding would end the process. For the same reason neither
/// function is noexcept. A `smart_ptr<RegExpException>` passes through.
namespace Toolkit::Base {

/// Returns the result of `operation`, or `failure` if it throws. Passing an empty string or
/// container as `failure` allocates nothing.
///
///     return Base::TryOr(false, [&] { return Load(path); });
template <typename Operation>
std::invoke_result_t<Operation> TryOr(std::invoke_result_t<Operation> failure,
                                      Operation&& operation)
{
    try {
        return std::forward<Operation>(operation)();
    } catch (const std::exception&) {
        return failure;
    }
}

/// Runs `operation` and returns whether it completed without throwing. For operations without a
/// result, and for callers that clean up after a failure.
///
///     if (!Base::RunsWithoutThrowing([&] { Append(text); }))
///         m_hasLostText = true;
template <typename Operation>
[[nodiscard]] bool RunsWithoutThrowing(Operation&& operation)
{
    try {
        std::forward<Operation>(operation)();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace Toolkit::Base
