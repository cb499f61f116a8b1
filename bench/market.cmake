tw_add_bench(bench_market LIBS tw_market)
