tw_add_bench(bench_sky LIBS tw_weather)
