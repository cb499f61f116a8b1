tw_add_bench(bench_displays LIBS tw_displays)
