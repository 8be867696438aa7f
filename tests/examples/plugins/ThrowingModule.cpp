// A plug-in whose module fails to start.

#include <stdexcept>

#include "PlugIn.h"

using namespace HostPlugIn;

namespace {

class ThrowingModule : public Toolkit::LibModule {
public:
    void Initialize() override { throw std::runtime_error("no sounding gear"); }
    void Release() override { throw std::runtime_error("never had any"); }
};

ThrowingModule s_module;
const ModuleRegistration s_registration(s_module);

} // namespace

const PlugIn* GetHostPlugIn() noexcept
{
    static const PlugIn plugIn{c_interfaceVersion, L"throwing", s_registration.GetFailure(),
                               nullptr, 0};
    return &plugIn;
}
