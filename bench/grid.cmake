tw_add_bench(bench_grid LIBS tw_grid)
