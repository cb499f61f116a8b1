tw_add_bench(bench_weather LIBS tw_faces tw_platform_os)
