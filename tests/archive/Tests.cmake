toolkit_test(archive/ArchiveZipTest.cpp)
target_sources(ArchiveZipTest PRIVATE archive/ZipWriter.cpp)
toolkit_test(archive/ZipInputStreamTest.cpp)
target_sources(ZipInputStreamTest PRIVATE archive/ZipWriter.cpp)
