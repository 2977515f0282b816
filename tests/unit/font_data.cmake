# The font-table integrity test as a target of its own: the generated tables and the test,
# without the rest of the library. Include from a CMakeLists that has found GTest and
# included GoogleTest.
add_executable(font_data_test
  ${CMAKE_SOURCE_DIR}/tests/unit/font_data_test.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_charsets.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_complx.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_cyrillic.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_duplx.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_gothic.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_greek.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_helve.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_helves.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_helvet.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_math.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_registry.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_script.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_serif.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_simplx.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_triplx.cpp
  ${CMAKE_SOURCE_DIR}/text/font_data_zoralf.cpp)
target_include_directories(font_data_test PRIVATE ${CMAKE_SOURCE_DIR})
target_link_libraries(font_data_test PRIVATE GTest::gtest_main)
gtest_discover_tests(font_data_test TEST_PREFIX "font_data." DISCOVERY_TIMEOUT 60)
