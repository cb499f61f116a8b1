tw_add_fuzzer(fuzz_layoutfile LIBS tw_backup)
