# A debugger on a program: breakpoints before, on and behind SVE instructions, a function's end, registers, a handler, the
# program's end. Where it is emulated, an SVE instruction is no place to step from: the step ends at the next breakpoint.
set pagination off
set confirm off
set startup-with-shell off
set print thread-events off
handle SIGILL nostop noprint pass
handle SIGUSR1 nostop noprint pass
file /programs/debugged
break *&stepped
run
info registers x0
delete
break *(&stepped + 8)
continue
info registers x0 pc
tbreak *&stepped_middle
continue
info registers x9
print $v0.s.u
stepi
stepi
info registers x1 x9
tbreak *&stepped_end
continue
info registers x0 x9
finish
info registers x0
continue
info registers x0 pc
delete
tbreak *&handler
continue
info registers x0
backtrace 1
continue
