set pagination off
break *'wxWindow::GTKHandleFocusIn()'
commands
printf "IN %p\n", $rdi
continue
end
break *'wxWindow::SetFocus()'
commands
printf "SETFOCUS %p\n", $rdi
bt 8
continue
end
break *'wxWindow::GTKHandleFocusOut()'
commands
printf "OUT %p\n", $rdi
continue
end
continue
