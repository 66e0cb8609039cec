// Fails at its first attempt, so that one retry mends it. The marker of an attempt counts for some
// seconds only: each run is to fail again.
const path = (env("TMPDIR") || "/tmp") + "/morvex_demo_flaky";
const lastFailure = file.exists(path) ? Number(file.read(path)) : 0;
const isSecond = Date.now() - lastFailure < 5000;
file.write(path, isSecond ? 0 : Date.now());
check.that(isSecond, "Works at the second attempt");
