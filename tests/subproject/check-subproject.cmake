# Configures and builds tests/subproject from nothing:
#   cmake -DSOURCE=... -DBINARY=... -DZRX_ROOT=... -DGENERATOR=... -DCXX=... -P check-subproject.cmake
file(REMOVE_RECURSE ${BINARY})
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BINARY} -G ${GENERATOR}
                        -DZRX_ROOT=${ZRX_ROOT} -DCMAKE_CXX_COMPILER=${CXX}
                RESULT_VARIABLE configured)
if(NOT configured EQUAL 0)
  message(FATAL_ERROR "configuring the project that adds zrparsexmlr failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BINARY} RESULT_VARIABLE built)
if(NOT built EQUAL 0)
  message(FATAL_ERROR "building the project that adds zrparsexmlr failed")
endif()
