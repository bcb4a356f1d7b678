"""The shortest story that still fails, by leaving out ever smaller parts of it."""


def shrunk(steps, fails):
    """`fails` plays a list of steps. @return a list that fails, of which no step can be left out"""
    size = max(1, len(steps) // 2)
    while True:
        start, left_out = 0, False
        while start < len(steps):
            fewer = steps[:start] + steps[start + size:]
            if fewer and fails(fewer):
                steps, left_out = fewer, True
            else:
                start += size
        if size > 1:
            size = max(1, size // 2)
        elif not left_out:
            return steps
