tw_add_bench(bench_appusage LIBS tw_desk)
