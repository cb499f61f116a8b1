tw_add_bench(bench_faces LIBS tw_faces tw_platform_os)
