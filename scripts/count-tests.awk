# Sums what the test programs of one ctest run report ("Totals: 3 passed, 0 failed, 1 skipped, ..."), from ctest's log.
# A program that ends badly without having counted a failure (a crash, a timeout, no such program) counts as one failed;
# one that reports no totals counts as one function.

/^[0-9]+\/[0-9]+ Test: / { totals = 0; failedHere = 0; passesSeen = 0 }
/^Unable to find executable/ { absent = 1 }
/^PASS +: / { passesSeen++ }
/^Totals: / {
    passed += $2
    failed += $4
    failedHere += $4
    skipped += $6
    totals = 1
}
/^Test (Passed|Failed)\.$/ {
    good = ($2 == "Passed.") && !absent
    absent = 0
    if (!totals)
        passed += passesSeen
    if (good && !totals && !passesSeen)
        passed++
    if (!good && !failedHere)
        failed++
}
END {
    line = (passed + 0) " passed, " (failed + 0) " failed"
    if (skipped)
        line = line ", " skipped " skipped"
    print line
}
