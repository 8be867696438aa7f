# TOOLKIT_REGEX_ENGINE_USED: the engine for regular expressions that TOOLKIT_REGEX_ENGINE asks for,
# `pcre` or `pcre2`. Its target is Toolkit::pcre or Toolkit::pcre2; tests use both where both exist.

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
            "\"${TOOLKIT_REGEX_ENGINE}\"). Debian's packages: libpcre2-dev (PCRE 2, from 10.30 on), "
            "libpcre3-dev (PCRE 1)"
    )
endif()
