// Compiles the engine's source in another namespace, so that both engines fit into one program.
#define Pcre PcreEngine
#include "toolkit/regExp/PatternEngine.Pcre.cpp"
#undef Pcre

#include "regExp/engines/EngineTable.h"

namespace Toolkit::TestSupport {

const EngineTable c_pcre = {PcreEngine::GetVersion,   PcreEngine::Compile,
                            PcreEngine::Free,         PcreEngine::Execute,
                            PcreEngine::GetNameCount, PcreEngine::GetNameEntrySize,
                            PcreEngine::GetNameTable};

} // namespace Toolkit::TestSupport
