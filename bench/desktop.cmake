tw_add_bench(bench_desktop LIBS tw_desktop)
