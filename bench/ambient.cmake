tw_add_bench(bench_ambient LIBS tw_faces tw_ambient tw_platform_os)
