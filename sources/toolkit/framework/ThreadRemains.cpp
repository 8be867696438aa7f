#include "toolkit/framework/ThreadRemains.h"

#include <wx/thread.h>

#include <new>

namespace Toolkit::Framework {
namespace {

class UncreatedThread : public wxThread {
public:
    UncreatedThread() : wxThread(wxTHREAD_JOINABLE) {}

private:
    ExitCode Entry() override { return nullptr; }
};

static_assert(sizeof(UncreatedThread) == sizeof(wxThread));

} // namespace

void DiscardThread(wxThread& thread)
{
    ::new (static_cast<void*>(&thread)) UncreatedThread();
}

} // namespace Toolkit::Framework
