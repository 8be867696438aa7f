toolkit_test(datetime/DateTimeTest.cpp)
toolkit_test(datetime/DateTimeZonesTest.cpp)
toolkit_private_test(
    datetime/LocaleTextTest.cpp base/FloatingPoint.cpp base/FloatingPoint.Strtod.cpp base/Numbers.cpp datetime/LocaleText.cpp
)
