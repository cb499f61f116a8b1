tw_add_bench(bench_customtokens LIBS tw_custom)
