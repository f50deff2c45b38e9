#pragma once
// Quiet headless runs: what Qt needs in a session without a desktop, so that
// standard error carries the program's own messages only.
namespace voltrix {

// Before the application object is made: a private runtime folder where the
// session has none (cron, Slurm, ssh), removed again at exit; and, on the
// offscreen platform, no notices of what that platform cannot do.
void PrepareHeadlessQt();

}  // namespace voltrix
