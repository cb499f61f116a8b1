tw_add_bench(bench_backup LIBS tw_backup)
