// Counts what held and what did not.
export class Checks {
  passed = 0;
  failed = 0;

  async check(claim, body) {
    try {
      await body();
      ++this.passed;
    } catch (error) {
      ++this.failed;
      console.error(`FAIL ${claim}: ${error.message}`);
    }
  }

  // The last thing that the program does.
  report() {
    console.log(`${this.passed} passed, ${this.failed} failed`);
    process.exit(this.failed === 0 && this.passed > 0 ? 0 : 1);
  }
}
