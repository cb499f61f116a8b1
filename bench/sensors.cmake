tw_add_bench(bench_sensors LIBS tw_platform_os)
