# TOOLKIT_REGEX_ENGINE_USED: the regular expression engine that TOOLKIT_REGEX_ENGINE selects, `pcre` or
# `pcre2`. Its target is Toolkit::pcre or Toolkit::pcre2; tests use both engines if both exist.

include(ToolkitPcre)
include(ToolkitPcre2)

set(TOOLKIT_REGEX_ENGINE_USED "${TOOLKIT_REGEX_ENGINE}")
if(TOOLKIT_REGEX_ENGINE STREQUAL "auto")
    set(TOOLKIT_REGEX_ENGINE_USED pcre2)
    if(TARGET Toolkit::pcre)
        set(TOOLKIT_REGEX_ENGINE_USED pcre)
    endif()
elseif(NOT TOOLKIT_REGEX_ENGINE MATCHES "^pcre2?$")
    message(FATAL_ERROR "TOOLKIT_REGEX_ENGINE is \"${TOOLKIT_REGEX_ENGINE}\": use auto, pcre or pcre2")
endif()

if(NOT TARGET Toolkit::${TOOLKIT_REGEX_ENGINE_USED})
    message(
        FATAL_ERROR
            "The engine for regular expressions is missing (TOOLKIT_REGEX_ENGINE is "
            "\"${TOOLKIT_REGEX_ENGINE}\"). Debian's packages: libpcre2-dev (PCRE 2, 10.30 or later), "
            "libpcre3-dev (PCRE 1)"
    )
endif()

# The sources of each engine, by their paths in sources/toolkit.
set(TOOLKIT_REGEX_SOURCES_pcre regExp/PatternEngine.Pcre.cpp)
set(TOOLKIT_REGEX_SOURCES_pcre2
    regExp/AtomicRecursion.cpp regExp/PatternEngine.Pcre2.cpp regExp/Pcre2Errors.cpp
    regExp/Pcre2Pattern.cpp regExp/Pcre2Syntax.cpp
)

# For tests and benchmarks that compile the library's sources themselves: what each engine needs besides
# its own sources, and then all that RegExp needs besides its engine.
set(TOOLKIT_REGEX_SOURCES_needed
    base/StackSpace.$<IF:$<PLATFORM_ID:Darwin>,Mac,Linux>.cpp base/StackSpace.cpp
    regExp/AsciiText.cpp regExp/FreshStack.cpp regExp/PatternItems.cpp
    regExp/PatternNesting.cpp
)
set(TOOLKIT_REGEX_SOURCES
    ${TOOLKIT_REGEX_SOURCES_needed}
    base/FloatingPoint.Strtod.cpp
    base/FloatingPoint.cpp
    base/Numbers.cpp
    base/Utf8.cpp
    regExp/Group.cpp
    regExp/GroupCollection.cpp
    regExp/MatchGroups.cpp
    regExp/MatchResult.cpp
    regExp/PatternRun.cpp
    regExp/PatternTraits.cpp
    regExp/RegExp.Exceptions.cpp
    regExp/RegExp.cpp
    regExp/StartBytes.cpp
    regExp/WholeMatchReplacement.cpp
)
