#include "memory/Sweep.h"

#include "toolkit/core/smart_ptr.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

#include <gtest/gtest.h>

#include <exception>
#include <new>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {
namespace {

std::string Describe(std::exception_ptr thrown)
{
    try {
        std::rethrow_exception(thrown);
    } catch (const smart_ptr<RegExpException>&) {
        return "a RegExpException";
    } catch (const std::bad_alloc&) {
        return "std::bad_alloc";
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "an unknown exception";
    }
}

} // namespace

bool Attempt::CheckException(Rule rule, std::exception_ptr thrown)
{
    if (!thrown)
        return true;
    const std::string what = Describe(thrown);
    const bool isAllowed = m_hasFailed && ((rule == Rule::BadAlloc && what == "std::bad_alloc") ||
                                           (rule == Rule::RegExp && what == "a RegExpException"));
    if (!isAllowed) {
        ++m_failures;
        ADD_FAILURE() << what << " was thrown";
    }
    return false;
}

void Attempt::Expect(bool isSuccess, bool isDocumentedFailure)
{
    if (isSuccess || (m_hasFailed && isDocumentedFailure))
        return;
    ++m_failures;
    ADD_FAILURE() << (m_hasFailed ? "neither the result of success nor a documented failure"
                                  : "not the result of success, although no allocation failed");
}

const std::vector<Operation>& Operations()
{
    static const std::vector<Operation> operations = [] {
        std::vector<Operation> all;
        for (const auto& part :
             {CoreOperations(), TextOperations(), FileOperations(), PatternOperations(),
              DateOperations(), ArchiveOperations(), ThreadOperations(), LogOperations(),
              SystemOperations(), MessageOperations()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return operations;
}

} // namespace Toolkit::TestSupport
