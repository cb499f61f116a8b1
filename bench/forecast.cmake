tw_add_bench(bench_forecast LIBS tw_weather)
