tw_add_bench(bench_look LIBS tw_look Qt6::Gui)
