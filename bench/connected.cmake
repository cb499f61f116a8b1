find_package(Qt6 6.4 REQUIRED COMPONENTS WebSockets)
tw_add_bench(bench_connected LIBS tw_connected Qt6::WebSockets)
target_include_directories(bench_connected PRIVATE "${PROJECT_SOURCE_DIR}/tests/support")
