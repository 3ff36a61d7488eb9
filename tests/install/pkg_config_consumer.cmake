# The same program, built with the flags that pkg-config gives.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(ENV{PKG_CONFIG_PATH} ${INSTALLED}/${LIB_DIR}/pkgconfig)
run(version ${PKG_CONFIG} --modversion pgmdev)
expect("version" "${version}" "${VERSION}\n")

run(flags ${PKG_CONFIG} --cflags --libs pgmdev)
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
set(consumer "${WORK_DIR}/pkg-config consumer")
run(ignored ${COMPILER} -std=c++20 ${FLAGS} ${SOURCE_DIR}/tests/consumer/consumer.cpp ${flags} -o ${consumer})

set(ENV{LD_LIBRARY_PATH} ${INSTALLED}/${LIB_DIR})
run(said ${consumer})
expect("the consumer said" "${said}" "${consumer_says}")

# The same for C.
run(flags ${PKG_CONFIG} --cflags --libs pgmdev_c)
separate_arguments(flags UNIX_COMMAND "${flags}")
set(consumer_in_c "${WORK_DIR}/pkg-config consumer in C")
run(ignored ${COMPILER} -x c -std=c99 -pedantic ${FLAGS} ${SOURCE_DIR}/examples/identify.c -x none ${flags}
  -o ${consumer_in_c})
run(said ${consumer_in_c})
expect("the consumer in C said" "${said}" "${consumer_in_c_says}")
