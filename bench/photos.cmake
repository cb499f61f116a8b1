tw_add_bench(bench_photos LIBS tw_files)
