# One step of the package test, run by ctest: cmake -DSTEP=... (see CMakeLists.txt) -P check.cmake
cmake_minimum_required(VERSION 3.25)

set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "Failed with ${result}: ${command}")
  endif()
endfunction()

# Configures and builds the outside program in its own folder; further arguments go to the configuration.
function(build_outside)
  file(REMOVE_RECURSE ${WORK_DIR}/${STEP})
  run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/outside -B ${WORK_DIR}/${STEP} -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_CXX_FLAGS=${CXX_FLAGS}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF -DVERSION=${VERSION} ${ARGN})
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/${STEP} --config ${CONFIG})
endfunction()

# Runs the program; it has to load the shared library if and only if it was built against that.
function(check_program program kind)
  run(${program})
  file(GET_RUNTIME_DEPENDENCIES EXECUTABLES ${program}
    RESOLVED_DEPENDENCIES_VAR found UNRESOLVED_DEPENDENCIES_VAR missing
    POST_EXCLUDE_REGEXES "^/(usr/)?lib")
  string(FIND "${found};${missing}" "libVnZEL10cmn.so.${ABI_VERSION}" position)
  if(kind STREQUAL "shared" AND position EQUAL -1)
    message(FATAL_ERROR "${program} doesn't load the shared library: ${found};${missing}")
  elseif(kind STREQUAL "static" AND NOT position EQUAL -1)
    message(FATAL_ERROR "${program} loads the shared library")
  endif()
endfunction()

if(STEP STREQUAL "install")
  # An installed tree can be moved: nothing in it names the folder that it was installed to.
  file(REMOVE_RECURSE ${WORK_DIR})
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --config ${CONFIG} --prefix ${WORK_DIR}/elsewhere)
  file(RENAME ${WORK_DIR}/elsewhere ${prefix})
  file(GLOB_RECURSE headers RELATIVE ${prefix}/include ${prefix}/include/*)
  if(NOT "VnZEL10cmn/VnZEL10cmn.h" IN_LIST headers)
    message(FATAL_ERROR "VnZEL10cmn.h isn't installed")
  endif()
  foreach(header IN LISTS headers)
    if(header MATCHES "/internal/|_internal\\.h$" OR NOT header MATCHES "^VnZEL10cmn/.*\\.h$")
      message(FATAL_ERROR "${header} shouldn't be installed")
    endif()
  endforeach()

elseif(STEP STREQUAL "static" OR STEP STREQUAL "shared")
  build_outside(-DCOMPONENT=${STEP})
  check_program(${WORK_DIR}/${STEP}/outside ${STEP})

elseif(STEP STREQUAL "default")
  build_outside()
  check_program(${WORK_DIR}/${STEP}/outside static)

elseif(STEP STREQUAL "variable")
  build_outside(-DVnZEL10cmn_SHARED_LIBS=ON)
  check_program(${WORK_DIR}/${STEP}/outside shared)

elseif(STEP STREQUAL "headers")
  # The one header includes all of them; each of them stands alone.
  file(GLOB_RECURSE headers RELATIVE ${prefix}/include ${prefix}/include/VnZEL10cmn/*.h)
  file(READ ${prefix}/include/VnZEL10cmn/VnZEL10cmn.h all)
  foreach(header IN LISTS headers)
    if(NOT all MATCHES "#include [\"<]${header}[\">]" AND NOT header STREQUAL "VnZEL10cmn/VnZEL10cmn.h")
      message(FATAL_ERROR "VnZEL10cmn.h doesn't include ${header}")
    endif()
  endforeach()
  build_outside(-DHEADERS=${prefix}/include)

elseif(STEP STREQUAL "pkgconfig")
  file(GLOB_RECURSE file ${prefix}/VnZEL10cmn.pc)
  get_filename_component(folder ${file} DIRECTORY)
  get_filename_component(libraries ${folder} DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} ${folder})
  run(${PKG_CONFIG} --exact-version=${VERSION} VnZEL10cmn)
  file(REMOVE_RECURSE ${WORK_DIR}/${STEP})
  file(MAKE_DIRECTORY ${WORK_DIR}/${STEP})
  separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
  foreach(kind IN ITEMS shared static)
    set(options)
    if(kind STREQUAL "static")
      set(options --static)
    endif()
    execute_process(COMMAND ${PKG_CONFIG} ${options} --cflags VnZEL10cmn
      OUTPUT_VARIABLE cflags COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${PKG_CONFIG} ${options} --libs VnZEL10cmn
      OUTPUT_VARIABLE libs COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(cflags UNIX_COMMAND "${cflags}")
    separate_arguments(libs UNIX_COMMAND "${libs}")
    if(kind STREQUAL "static")
      set(libs -Wl,-Bstatic ${libs} -Wl,-Bdynamic)
    else()
      list(APPEND libs -Wl,-rpath,${libraries})
    endif()
    set(program ${WORK_DIR}/${STEP}/outside_${kind})
    run(${CXX_COMPILER} ${flags} -std=c++20 ${cflags} ${CMAKE_CURRENT_LIST_DIR}/outside/main.cpp -o ${program} ${libs})
    check_program(${program} ${kind})
  endforeach()

elseif(STEP STREQUAL "exports")
  # The published classes, and the bases that carry operations of theirs.
  set(published
    clsVnError clsVnLogItem clsVnLogFile IVnLogItem clsHelper01 clsSHA256 clsZelBaseCoding IVnZelItem clsZelItemCash
    clsZelItemList clsZelListItemFact clsZelVatItem clsZelVatList clsZelContainer clsZelTransAct clsZelReport
    clsZelTransActData clsZelItemPrint clsZelRprtPrint Currency Date
    VnObject DeviceDocument ItemHolder Renderer)
  file(GLOB_RECURSE library ${prefix}/libVnZEL10cmn.so)
  execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${library}
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" "," symbols "${symbols}")
  string(REGEX REPLACE "\n$" "" symbols "${symbols}")
  string(REPLACE "\n" ";" symbols "${symbols}")
  set(seen)
  foreach(symbol IN LISTS symbols)
    if(NOT symbol MATCHES
       "^[0-9a-f]+ [A-Za-z] (vtable for |typeinfo for |typeinfo name for |non-virtual thunk to )?VnZEL10cmn::([A-Za-z0-9]+)"
       OR NOT CMAKE_MATCH_2 IN_LIST published)
      message(FATAL_ERROR "Exported, but not published: ${symbol}")
    endif()
    list(APPEND seen ${CMAKE_MATCH_2})
  endforeach()
  foreach(class IN LISTS published)
    if(NOT class IN_LIST seen)
      message(FATAL_ERROR "Published, but not exported: ${class}")
    endif()
  endforeach()

elseif(STEP STREQUAL "environment")
  # The library has no configuration of its own: it doesn't ask for variables of the environment.
  file(GLOB_RECURSE libraries ${prefix}/libVnZEL10cmn.a ${prefix}/libVnZEL10cmn.so)
  if(CXX_FLAGS MATCHES "--coverage")
    list(FILTER libraries INCLUDE REGEX "\\.a$")  # the counters' own code stands in the shared one
  endif()
  if(NOT libraries MATCHES "libVnZEL10cmn\\.a")
    message(FATAL_ERROR "There is no library in ${prefix}")
  endif()
  foreach(library IN LISTS libraries)
    execute_process(COMMAND ${NM} -uC ${library} OUTPUT_VARIABLE wanted COMMAND_ERROR_IS_FATAL ANY)
    if(NOT wanted MATCHES "getentropy")
      message(FATAL_ERROR "${NM} doesn't say what ${library} needs:\n${wanted}")
    endif()
    if(wanted MATCHES "getenv|environ[^m]")
      message(FATAL_ERROR "${library} reads the environment: ${CMAKE_MATCH_0}")
    endif()
  endforeach()

else()
  message(FATAL_ERROR "Unknown step ${STEP}")
endif()
