tw_add_bench(bench_notices LIBS tw_notices)
