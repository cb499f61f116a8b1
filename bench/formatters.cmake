tw_add_bench(bench_formatters LIBS tw_settings)
