tw_add_bench(bench_notes LIBS tw_workspace)
