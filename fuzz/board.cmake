tw_add_fuzzer(fuzz_board LIBS tw_backup)
