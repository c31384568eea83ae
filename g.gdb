set pagination off
break wxWindow::GTKHandleFocusIn
commands
bt 4
continue
end
break wxWindow::GTKHandleFocusOutNoDeferring
commands
bt 4
continue
end
continue
