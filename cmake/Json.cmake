# nlohmann/json, header only: Debian's nlohmann-json3-dev. The MinGW targets
# can't take /usr/include as a whole, so its nlohmann folder is copied into
# the build tree and included from there.
set(ZOR_JSON_HEADER /usr/include/nlohmann/json.hpp)
if(NOT EXISTS ${ZOR_JSON_HEADER})
  message(FATAL_ERROR "nlohmann/json.hpp not found: run scripts/install-deps.sh (nlohmann-json3-dev)")
endif()
add_library(zor_json INTERFACE)
if(CMAKE_CROSSCOMPILING)
  set(_zor_json_include ${CMAKE_BINARY_DIR}/json-include)
  file(COPY /usr/include/nlohmann DESTINATION ${_zor_json_include})
  target_include_directories(zor_json SYSTEM INTERFACE ${_zor_json_include})
else()
  find_package(nlohmann_json 3 REQUIRED)
  target_link_libraries(zor_json INTERFACE nlohmann_json::nlohmann_json)
endif()
