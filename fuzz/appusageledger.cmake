tw_add_fuzzer(fuzz_appusageledger LIBS tw_desk)
