# A debugger on a program: breakpoints before and behind SVE code, a function's end, registers, a handler, the program's
# end. An SVE instruction itself is no place to stop at or to step from where it is emulated.
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
tbreak *&handler
continue
info registers x0
backtrace 1
continue
