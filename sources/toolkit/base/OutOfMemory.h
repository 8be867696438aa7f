#pragma once

#include <exception>
#include <type_traits>
#include <utility>

/// The one way in which a public operation turns an exception into its failure result. Usually the
/// exception is std::bad_alloc.
///
/// Both functions catch std::exception and nothing else. wxThread::Kill() cancels a thread by an
/// unwinding of the stack that a catch-all would stop, which ends the process; for the same reason
/// neither function is noexcept. A `smart_ptr<RegExpException>` passes.
namespace Toolkit::Base {

/// What `operation` returns; `failure` when it throws. The empty failures of strings and containers
/// allocate nothing.
///
///     return Base::ResultOr(false, [&] { return Load(path); });
template <typename Operation>
std::invoke_result_t<Operation> ResultOr(std::invoke_result_t<Operation> failure,
                                         Operation&& operation)
{
    try {
        return std::forward<Operation>(operation)();
    } catch (const std::exception&) {
        return failure;
    }
}

/// Whether `operation` runs to its end without throwing. For operations that have no result, and
/// where a failure has to be cleaned up.
///
///     if (!Base::Completes([&] { Append(text); }))
///         m_hasLostText = true;
template <typename Operation>
[[nodiscard]] bool Completes(Operation&& operation)
{
    try {
        std::forward<Operation>(operation)();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace Toolkit::Base
