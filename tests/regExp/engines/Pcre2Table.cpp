// Compiles the engine's source in another namespace, so that both engines fit into one program.
#define Pcre Pcre2Engine
#include "toolkit/regExp/PatternEngine.Pcre2.cpp"
#undef Pcre

#include "regExp/engines/EngineTable.h"

namespace Toolkit::TestSupport {

const EngineTable c_pcre2 = {Pcre2Engine::GetVersion,   Pcre2Engine::Compile,
                             Pcre2Engine::Free,         Pcre2Engine::Execute,
                             Pcre2Engine::GetNameCount, Pcre2Engine::GetNameEntrySize,
                             Pcre2Engine::GetNameTable};

} // namespace Toolkit::TestSupport
