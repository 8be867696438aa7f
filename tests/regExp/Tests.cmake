toolkit_test(regExp/GroupCollectionTest.cpp)
toolkit_test(regExp/MatchResultTest.cpp)
