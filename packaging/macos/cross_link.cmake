# The command with which the cross build links a module.
set(CMAKE_CXX_LINKER_WRAPPER_FLAG "")
set(CMAKE_CXX_LINKER_WRAPPER_FLAG_SEP " ")
set(CMAKE_CXX_CREATE_SHARED_MODULE
  "ld64.lld-14 -bundle -arch ${VITRELL_CROSS_ARCH} -platform_version macos 11.0 11.0 -adhoc_codesign <LINK_FLAGS> -o <TARGET> <OBJECTS> <LINK_LIBRARIES> ${CMAKE_CURRENT_LIST_DIR}/libc++.tbd ${VITRELL_ZIG}/lib/libc/darwin/libSystem.tbd")
