"""Generated files of content, and what the dock should read of them: see generated-readings-test."""
