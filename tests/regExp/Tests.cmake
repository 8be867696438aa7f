toolkit_test(regExp/GroupCollectionTest.cpp)
toolkit_private_test(
    regExp/MatchGroupsTest.cpp regExp/MatchGroups.cpp regExp/PatternEngine.cpp
    regExp/StackSpace.$<IF:$<PLATFORM_ID:Darwin>,Mac,Linux>.cpp regExp/StackSpace.cpp
)
target_link_libraries(MatchGroupsTest PRIVATE Toolkit::pcre)
toolkit_test(regExp/MatchResultTest.cpp)
toolkit_private_test(regExp/PatternTraitsTest.cpp regExp/PatternTraits.cpp)
toolkit_test(regExp/RegExpExceptionTest.cpp)
toolkit_test(regExp/RegExpReferenceTest.cpp)
target_link_libraries(RegExpReferenceTest PRIVATE Toolkit::pcre)
toolkit_test(regExp/RegExpReplaceTest.cpp)
toolkit_test(regExp/RegExpStackTest.cpp)
toolkit_test(regExp/RegExpTest.cpp)
