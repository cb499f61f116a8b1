tw_add_bench(bench_tick LIBS tw_tick)
