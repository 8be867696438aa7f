find_package(ICU REQUIRED COMPONENTS uc)

toolkit_test(encoding/StringConvertReferenceTest.cpp)
toolkit_test(encoding/StringConvertTest.cpp)
toolkit_test(encoding/UTF7Test.cpp)
toolkit_test(encoding/UTF8ReferenceTest.cpp)
target_link_libraries(UTF8ReferenceTest PRIVATE ICU::uc)
toolkit_test(encoding/UTF8Test.cpp)
